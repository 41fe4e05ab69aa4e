#include "tests/support/RecordingDialogs.h"

#include <string>
#include <utility>

#include "base/time/XMLTime.h"
#include "protocol/ClientRequests.h"
#include "ui/DialogCalls.h"

namespace {

std::vector<std::string> transcript;
bool actionDialogShown = false;
std::string failingFunction;

void Record(std::string line) {
    const bool fail = !failingFunction.empty() && line.compare(0, failingFunction.size(), failingFunction) == 0 &&
                      line.size() > failingFunction.size() && line[failingFunction.size()] == '(';
    transcript.push_back(std::move(line));
    if (fail) throw RecordedDialogFailure();
}

const char* Flag(bool value) { return value ? "true" : "false"; }

std::string Number(unsigned long long id) { return std::to_string(id); }

}  // namespace

namespace RecordingDialogs {

std::vector<std::string> Take() {
    std::vector<std::string> taken;
    taken.swap(transcript);
    return taken;
}

void Reset() {
    transcript.clear();
    actionDialogShown = false;
    failingFunction.clear();
}

void FailOn(const std::string& function) { failingFunction = function; }

void SetActionDialogShown(bool shown) { actionDialogShown = shown; }

}  // namespace RecordingDialogs

void ShowActionRequestDialog(bool forceShow, const TimeInterval& remindInterval, bool snoozable) {
    Record(std::string("ShowActionRequestDialog(") + Flag(forceShow) + "," +
           TimeIntervalToXMLDuration(remindInterval).Str() + "," + Flag(snoozable) + ")");
}

void UpdateActionRequestDialog() { Record("UpdateActionRequestDialog()"); }

bool IsActionRequestDialogShown() {
    Record("IsActionRequestDialogShown()");
    return actionDialogShown;
}

void EnableActionRequestDialog() { Record("EnableActionRequestDialog()"); }
void DisableActionRequestDialog() { Record("DisableActionRequestDialog()"); }
void ShowActionDetailsDialog(unsigned long long id) { Record("ShowActionDetailsDialog(" + Number(id) + ")"); }
void ShowConfirmationRequestDialog(unsigned long long id) {
    Record("ShowConfirmationRequestDialog(" + Number(id) + ")");
}

void ShowMessageDialog(const MessageRequest& request) {
    Record("ShowMessageDialog(" + Number(request.id) + "," + std::string(request.title.View()) + ")");
}

void RemoveMessageDialog(unsigned long long id) { Record("RemoveMessageDialog(" + Number(id) + ")"); }
void RemoveTimedoutMessageDialogs() { Record("RemoveTimedoutMessageDialogs()"); }

void ShowQuietModeDialog(const Instant& start, const Instant& end) {
    Record("ShowQuietModeDialog(" + std::to_string(start.Microseconds() / kMicrosecondsPerSecond) + "," +
           std::to_string(end.Microseconds() / kMicrosecondsPerSecond) + ")");
}

void RemoveQuietModeDialog() { Record("RemoveQuietModeDialog()"); }
void CreateHiddenWindowOnce() { Record("CreateHiddenWindowOnce()"); }
void DestroyApplicationContext() { Record("DestroyApplicationContext()"); }
