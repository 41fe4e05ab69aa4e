#include "ui/XDialogCalls.h"

#include "ui/HiddenWindow.h"
#include "ui/XApplication.h"

// The dialogs are not built yet: until each one exists, its entries below show
// nothing, and the action dialog never counts as shown, so the dispatch goes on
// as if the user had not opened it. Like the dialogs they stand for, they are
// harmless before the display is open.

// Not built yet: the action request dialog.
void XDialogCalls::ShowActionRequestDialog(bool, const TimeInterval&, bool) {}
void XDialogCalls::UpdateActionRequestDialog() {}
bool XDialogCalls::IsActionRequestDialogShown() {
    return false;
}
void XDialogCalls::EnableActionRequestDialog() {}
void XDialogCalls::DisableActionRequestDialog() {}

// Not built yet: the action details and confirmation dialogs.
void XDialogCalls::ShowActionDetailsDialog(unsigned long long) {}
void XDialogCalls::ShowConfirmationRequestDialog(unsigned long long) {}

// Not built yet: the message and quiet-mode dialogs.
void XDialogCalls::ShowMessageDialog(const MessageRequest&) {}
void XDialogCalls::RemoveMessageDialog(unsigned long long) {}
void XDialogCalls::RemoveTimedoutMessageDialogs() {}
void XDialogCalls::ShowQuietModeDialog(const Instant&, const Instant&) {}
void XDialogCalls::RemoveQuietModeDialog() {}

// Built: the hidden window and the closing of the application context.

void XDialogCalls::CreateHiddenWindowOnce() {
    ::CreateHiddenWindowOnce();
}

void XDialogCalls::DestroyApplicationContext() {
    ::DestroyApplicationContext();
}
