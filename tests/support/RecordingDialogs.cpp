#include "tests/support/RecordingDialogs.h"

#include <string>
#include <utility>

#include "app/DialogCalls.h"
#include "base/time/XMLTime.h"
#include "protocol/ClientRequests.h"

namespace {

std::vector<std::string> transcript;
bool actionDialogShown = false;
// Shown from the first ShowConfirmationRequestDialog until the test answers it.
bool confirmationShown = false;
std::string failingFunction;

void Record(std::string line) {
    const bool fail = !failingFunction.empty() && line.compare(0, failingFunction.size(), failingFunction) == 0 &&
                      line.size() > failingFunction.size() && line[failingFunction.size()] == '(';
    transcript.push_back(std::move(line));
    if (fail) throw RecordedDialogFailure();
}

const char* Flag(bool value) { return value ? "true" : "false"; }

std::string Number(unsigned long long id) { return std::to_string(id); }

// Every call of the screen, recorded.
class Recorder final : public DialogCalls {
public:
    void ShowActionRequestDialog(bool forceShow, const TimeInterval& remindInterval, bool snoozable) override {
        Record(std::string("ShowActionRequestDialog(") + Flag(forceShow) + "," +
               TimeIntervalToXMLDuration(remindInterval).Str() + "," + Flag(snoozable) + ")");
    }

    void UpdateActionRequestDialog() override { Record("UpdateActionRequestDialog()"); }
    // Not recorded: the updates before it are what the dispatch decides.
    void FlushActionRequestDialog() override {}

    bool IsActionRequestDialogShown() override {
        Record("IsActionRequestDialogShown()");
        return actionDialogShown;
    }

    void EnableActionRequestDialog() override { Record("EnableActionRequestDialog()"); }
    void DisableActionRequestDialog() override { Record("DisableActionRequestDialog()"); }
    void RaiseActionRequestDialog() override { Record("RaiseActionRequestDialog()"); }
    void MarkActionRequestDialogUrgent() override { Record("MarkActionRequestDialogUrgent()"); }
    void ShowActionDetailsDialog(unsigned long long id, EntryNumber) override {
        Record("ShowActionDetailsDialog(" + Number(id) + ")");
    }
    void ShowConfirmationRequestDialog(unsigned long long id, EntryNumber) override {
        Record("ShowConfirmationRequestDialog(" + Number(id) + ")");
        confirmationShown = true;
    }
    // Not recorded: questions, not calls; the answers are set by the test.
    bool IsActionDetailsDialogShown() override { return false; }
    bool IsConfirmationDialogShown() override { return confirmationShown; }
    bool IsQuietModeDialogShown() override { return false; }

    void ShowMessageDialog(const MessageRequest& request) override {
        Record("ShowMessageDialog(" + Number(request.id) + "," + std::string(request.title.View()) + ")");
    }

    void RemoveMessageDialog(unsigned long long id) override { Record("RemoveMessageDialog(" + Number(id) + ")"); }
    void RemoveTimedoutMessageDialogs() override { Record("RemoveTimedoutMessageDialogs()"); }

    void ShowQuietModeDialog(const Instant& start, const Instant& end) override {
        Record("ShowQuietModeDialog(" + std::to_string(start.Microseconds() / kMicrosecondsPerSecond) + "," +
               std::to_string(end.Microseconds() / kMicrosecondsPerSecond) + ")");
    }

    void RemoveQuietModeDialog() override { Record("RemoveQuietModeDialog()"); }
    void CreateHiddenWindowOnce() override { Record("CreateHiddenWindowOnce()"); }
    void DestroyApplicationContext() override { Record("DestroyApplicationContext()"); }
};

Recorder recorder;

}  // namespace

namespace RecordingDialogs {

std::vector<std::string> Take() {
    std::vector<std::string> taken;
    taken.swap(transcript);
    return taken;
}

void Reset() {
    WireDialogCalls(&recorder);
    transcript.clear();
    actionDialogShown = false;
    confirmationShown = false;
    failingFunction.clear();
}

void FailOn(const std::string& function) { failingFunction = function; }

void SetActionDialogShown(bool shown) { actionDialogShown = shown; }

void CloseConfirmation() { confirmationShown = false; }

}  // namespace RecordingDialogs
