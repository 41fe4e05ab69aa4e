// The dialogs the dispatch calls are built separately; until they are, every
// call does nothing. Like the real ones, these are harmless before the display
// exists and while app_context is null.

#include "ui/DialogCalls.h"

void ShowActionRequestDialog(bool, const TimeInterval&, bool) {}
void UpdateActionRequestDialog() {}
bool IsActionRequestDialogShown() {
    return false;
}
void EnableActionRequestDialog() {}
void DisableActionRequestDialog() {}

void ShowActionDetailsDialog(unsigned long long) {}
void ShowConfirmationRequestDialog(unsigned long long) {}

void ShowMessageDialog(const MessageRequest&) {}
void RemoveMessageDialog(unsigned long long) {}
void RemoveTimedoutMessageDialogs() {}
void ShowQuietModeDialog(const Instant&, const Instant&) {}
void RemoveQuietModeDialog() {}
