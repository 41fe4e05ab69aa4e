#include "app/DialogCalls.h"

namespace {

// Stands in while nothing is wired: a program that has not opened its
// display yet, or a test that shows nothing.
class NoDialogs final : public DialogCalls {
public:
    void ShowActionRequestDialog(bool, const TimeInterval&, bool) override {}
    void UpdateActionRequestDialog() override {}
    void FlushActionRequestDialog() override {}
    bool IsActionRequestDialogShown() override { return false; }
    void EnableActionRequestDialog() override {}
    void DisableActionRequestDialog() override {}
    void ShowActionDetailsDialog(unsigned long long, EntryNumber) override {}
    void ShowConfirmationRequestDialog(unsigned long long, EntryNumber) override {}
    bool IsActionDetailsDialogShown() override { return false; }
    bool IsConfirmationDialogShown() override { return false; }
    void ShowMessageDialog(const MessageRequest&) override {}
    void RemoveMessageDialog(unsigned long long) override {}
    void RemoveTimedoutMessageDialogs() override {}
    void ShowQuietModeDialog(const Instant&, const Instant&) override {}
    void RemoveQuietModeDialog() override {}
    bool IsQuietModeDialogShown() override { return false; }
    void CreateHiddenWindowOnce() override {}
    void DestroyApplicationContext() override {}
};

// Constant-initialised, so wiring from another file's static initialiser is safe.
DialogCalls* wired = nullptr;

}  // namespace

void WireDialogCalls(DialogCalls* calls) {
    wired = calls;
}

DialogCalls& WiredDialogCalls() {
    static NoDialogs none;
    return wired != nullptr ? *wired : none;
}

void ShowActionRequestDialog(bool forceShow, const TimeInterval& remindInterval, bool snoozable) {
    WiredDialogCalls().ShowActionRequestDialog(forceShow, remindInterval, snoozable);
}
void UpdateActionRequestDialog() {
    WiredDialogCalls().UpdateActionRequestDialog();
}

void FlushActionRequestDialog() {
    WiredDialogCalls().FlushActionRequestDialog();
}
bool IsActionRequestDialogShown() {
    return WiredDialogCalls().IsActionRequestDialogShown();
}
void EnableActionRequestDialog() {
    WiredDialogCalls().EnableActionRequestDialog();
}
void DisableActionRequestDialog() {
    WiredDialogCalls().DisableActionRequestDialog();
}
void RaiseActionRequestDialog() {
    WiredDialogCalls().RaiseActionRequestDialog();
}
void MarkActionRequestDialogUrgent() {
    WiredDialogCalls().MarkActionRequestDialogUrgent();
}
void ShowActionDetailsDialog(unsigned long long id, EntryNumber entry) {
    WiredDialogCalls().ShowActionDetailsDialog(id, entry);
}
void ShowConfirmationRequestDialog(unsigned long long id, EntryNumber entry) {
    WiredDialogCalls().ShowConfirmationRequestDialog(id, entry);
}
bool IsActionDetailsDialogShown() {
    return WiredDialogCalls().IsActionDetailsDialogShown();
}
bool IsConfirmationDialogShown() {
    return WiredDialogCalls().IsConfirmationDialogShown();
}
void ShowMessageDialog(const MessageRequest& request) {
    WiredDialogCalls().ShowMessageDialog(request);
}
void RemoveMessageDialog(unsigned long long id) {
    WiredDialogCalls().RemoveMessageDialog(id);
}
void RemoveTimedoutMessageDialogs() {
    WiredDialogCalls().RemoveTimedoutMessageDialogs();
}
void ShowQuietModeDialog(const Instant& start, const Instant& end) {
    WiredDialogCalls().ShowQuietModeDialog(start, end);
}
void RemoveQuietModeDialog() {
    WiredDialogCalls().RemoveQuietModeDialog();
}
bool IsQuietModeDialogShown() {
    return WiredDialogCalls().IsQuietModeDialogShown();
}
