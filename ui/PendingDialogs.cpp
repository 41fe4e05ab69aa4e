// The dialog calls of the dispatch. The action request dialog is real; the
// others are built separately, and until they are, each call does nothing.
// Like the real ones, these are harmless before the display exists and while
// app_context is null.

#include "ui/ActionRequestDialog.h"
#include "ui/DialogCalls.h"

void ShowActionRequestDialog(bool forceShow, const TimeInterval& remindInterval, bool snoozable) {
    ActionRequestDialog::Show(forceShow, remindInterval, snoozable);
}
void UpdateActionRequestDialog() { ActionRequestDialog::Update(); }
bool IsActionRequestDialogShown() { return ActionRequestDialog::IsShown(); }
void EnableActionRequestDialog() { ActionRequestDialog::Enable(); }
void DisableActionRequestDialog() { ActionRequestDialog::Disable(); }

void ShowActionDetailsDialog(unsigned long long) {}
void ShowConfirmationRequestDialog(unsigned long long) {}

void ShowMessageDialog(const MessageRequest&) {}
void RemoveMessageDialog(unsigned long long) {}
void RemoveTimedoutMessageDialogs() {}
void ShowQuietModeDialog(const Instant&, const Instant&) {}
void RemoveQuietModeDialog() {}
