#pragma once

// What the dispatch, the tick and the exit path ask of the screen. app/ owns
// this interface and never includes a ui/ header: the X side implements it
// (ui/XDialogCalls.h), main wires that implementation in, and the dispatch
// tests wire a recorder instead (tests/support/RecordingDialogs).
//
// Every call must be harmless before the display is open: client messages are
// handled during start-up already. With nothing wired, every call does
// nothing and the action dialog counts as not shown.

#include "base/time/Instant.h"
#include "protocol/ActionRequest.h"

struct MessageRequest;

class DialogCalls {
public:
    virtual ~DialogCalls() = default;

    // The action request dialog.
    virtual void ShowActionRequestDialog(bool forceShow, const TimeInterval& remindInterval, bool snoozable) = 0;
    virtual void UpdateActionRequestDialog() = 0;
    // Carries out the refreshes that updates since the last call asked for:
    // a batch of many documents or commands costs one refresh, and one that
    // fails is handled where the batch or command is.
    virtual void FlushActionRequestDialog() = 0;
    virtual bool IsActionRequestDialogShown() = 0;
    virtual void EnableActionRequestDialog() = 0;
    virtual void DisableActionRequestDialog() = 0;
    // Brings the shown dialog back over other windows, also from being
    // minimised, and asks the window manager to activate it; nothing when it
    // is not shown. Only a user's own request may do this (app/Attention.h).
    virtual void RaiseActionRequestDialog() {}
    // Marks the shown dialog as wanting the user's attention (the window
    // manager's urgency hint) until the user touches it; nothing when it is
    // not shown. A screen that cannot draw attention ignores both.
    virtual void MarkActionRequestDialogUrgent() {}

    // The action details and confirmation dialogs, each for one pending entry
    // (ActionRequest::entry) with this ID.
    virtual void ShowActionDetailsDialog(unsigned long long id, EntryNumber entry) = 0;
    virtual void ShowConfirmationRequestDialog(unsigned long long id, EntryNumber entry) = 0;
    virtual bool IsActionDetailsDialogShown() = 0;
    virtual bool IsConfirmationDialogShown() = 0;

    // Message and quiet-mode dialogs.
    virtual void ShowMessageDialog(const MessageRequest& request) = 0;
    virtual void RemoveMessageDialog(unsigned long long id) = 0;
    virtual void RemoveTimedoutMessageDialogs() = 0;
    virtual void ShowQuietModeDialog(const Instant& start, const Instant& end) = 0;
    virtual void RemoveQuietModeDialog() = 0;
    virtual bool IsQuietModeDialogShown() = 0;

    // The hidden top-level window through which another process asks for the
    // action dialog. The tick calls this on every tick after initialisation;
    // the window is made the first time only.
    virtual void CreateHiddenWindowOnce() = 0;

    // Closes the display and the toolkit's application context if they are
    // open; the ordinary exit path calls it.
    virtual void DestroyApplicationContext() = 0;
};

// Makes `calls` the screen that every call reaches from now on; null unwires.
// The caller keeps it alive for as long as it stays wired.
void WireDialogCalls(DialogCalls* calls);

// The wired screen, or one that does nothing when none is.
DialogCalls& WiredDialogCalls();

// The names the dispatch calls, each forwarding to the wired screen.
void ShowActionRequestDialog(bool forceShow, const TimeInterval& remindInterval, bool snoozable);
void UpdateActionRequestDialog();
void FlushActionRequestDialog();
bool IsActionRequestDialogShown();
void EnableActionRequestDialog();
void DisableActionRequestDialog();
void RaiseActionRequestDialog();
void MarkActionRequestDialogUrgent();
void ShowActionDetailsDialog(unsigned long long id, EntryNumber entry);
void ShowConfirmationRequestDialog(unsigned long long id, EntryNumber entry);
bool IsActionDetailsDialogShown();
bool IsConfirmationDialogShown();
void ShowMessageDialog(const MessageRequest& request);
void RemoveMessageDialog(unsigned long long id);
void RemoveTimedoutMessageDialogs();
void ShowQuietModeDialog(const Instant& start, const Instant& end);
void RemoveQuietModeDialog();
bool IsQuietModeDialogShown();
