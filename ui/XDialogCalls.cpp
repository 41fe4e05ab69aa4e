#include "ui/XDialogCalls.h"

#include "protocol/ClientRequests.h"
#include "ui/ActionDetailsDialog.h"
#include "ui/ConfirmationDialog.h"
#include "ui/HiddenWindow.h"
#include "ui/MessageDialog.h"
#include "ui/QuietModeDialog.h"
#include "ui/XApplication.h"

// Every entry is harmless before the display is open: the dialogs show
// nothing until then.

// Not built yet: the action request dialog. Until it exists its entries show
// nothing, and it never counts as shown, so the dispatch goes on as if the
// user had not opened it.
void XDialogCalls::ShowActionRequestDialog(bool, const TimeInterval&, bool) {}
void XDialogCalls::UpdateActionRequestDialog() {}
bool XDialogCalls::IsActionRequestDialogShown() {
    return false;
}
void XDialogCalls::EnableActionRequestDialog() {}
void XDialogCalls::DisableActionRequestDialog() {}

void XDialogCalls::ShowActionDetailsDialog(unsigned long long id) {
    ActionDetailsDialog::Show(id);
}

void XDialogCalls::ShowConfirmationRequestDialog(unsigned long long id) {
    ConfirmationDialog::Show(id);
}

void XDialogCalls::ShowMessageDialog(const MessageRequest& request) {
    MessageDialog::Show(request, Instant::Now());
}

void XDialogCalls::RemoveMessageDialog(unsigned long long id) {
    MessageDialog::Remove(id);
}

void XDialogCalls::RemoveTimedoutMessageDialogs() {
    MessageDialog::RemoveTimedOut(Instant::Now());
}

void XDialogCalls::ShowQuietModeDialog(const Instant& start, const Instant& end) {
    QuietModeDialog::Show(start, end);
}

void XDialogCalls::RemoveQuietModeDialog() {
    QuietModeDialog::Remove();
}

void XDialogCalls::CreateHiddenWindowOnce() {
    ::CreateHiddenWindowOnce();
}

void XDialogCalls::DestroyApplicationContext() {
    ::DestroyApplicationContext();
}
