#include "ui/XDialogCalls.h"

#include "protocol/ClientRequests.h"
#include "ui/ActionDetailsDialog.h"
#include "ui/ActionRequestDialog.h"
#include "ui/Attention.h"
#include "ui/ConfirmationDialog.h"
#include "ui/HiddenWindow.h"
#include "ui/MessageDialog.h"
#include "ui/QuietModeDialog.h"
#include "ui/WindowIdentity.h"
#include "ui/XApplication.h"

// Every entry is harmless before the display is open: the dialogs show
// nothing until then.

void XDialogCalls::ShowActionRequestDialog(bool forceShow, const TimeInterval& remindInterval, bool snoozable) {
    ActionRequestDialog::Show(forceShow, remindInterval, snoozable);
}

void XDialogCalls::UpdateActionRequestDialog() {
    ActionRequestDialog::Update();
}

void XDialogCalls::FlushActionRequestDialog() {
    ActionRequestDialog::FlushRefresh();
}

bool XDialogCalls::IsActionRequestDialogShown() {
    return ActionRequestDialog::IsShown();
}

void XDialogCalls::EnableActionRequestDialog() {
    ActionRequestDialog::Enable();
}

void XDialogCalls::DisableActionRequestDialog() {
    ActionRequestDialog::Disable();
}

void XDialogCalls::RaiseActionRequestDialog() {
    RaiseAndActivate(ActionRequestDialog::Shell());
}

void XDialogCalls::MarkActionRequestDialogUrgent() {
    MarkUrgent(ActionRequestDialog::Shell());
}

void XDialogCalls::ShowActionDetailsDialog(unsigned long long id, EntryNumber entry) {
    ActionDetailsDialog::Show(id, entry);
}

void XDialogCalls::ShowConfirmationRequestDialog(unsigned long long id, EntryNumber entry) {
    ConfirmationDialog::Show(id, entry);
}

bool XDialogCalls::IsActionDetailsDialogShown() {
    return ActionDetailsDialog::IsShown();
}

bool XDialogCalls::IsConfirmationDialogShown() {
    return ConfirmationDialog::IsShown();
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

bool XDialogCalls::IsQuietModeDialogShown() {
    return QuietModeDialog::IsShown();
}

void XDialogCalls::CreateHiddenWindowOnce() {
    ::CreateHiddenWindowOnce();
}

void XDialogCalls::DestroyApplicationContext() {
    ::DestroyApplicationContext();
}
