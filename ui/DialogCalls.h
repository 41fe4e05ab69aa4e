#pragma once

// Everything the dispatch asks of the X side. ui/ implements these (the
// header itself includes nothing from X, so app/ can use it); the tests
// link tests/support/RecordingDialogs.cpp instead, which writes one line per
// call so a test can assert the transcript. Every call must be harmless before
// the display is open (client messages are handled during start-up already).

#include "base/time/Instant.h"

struct MessageRequest;

// The action request dialog.
void ShowActionRequestDialog(bool forceShow, const TimeInterval& remindInterval, bool snoozable);
void UpdateActionRequestDialog();
bool IsActionRequestDialogShown();
void EnableActionRequestDialog();
void DisableActionRequestDialog();

// The action details and confirmation dialogs.
void ShowActionDetailsDialog(unsigned long long id);
void ShowConfirmationRequestDialog(unsigned long long id);

// Message and quiet-mode dialogs.
void ShowMessageDialog(const MessageRequest& request);
void RemoveMessageDialog(unsigned long long id);
void RemoveTimedoutMessageDialogs();
void ShowQuietModeDialog(const Instant& start, const Instant& end);
void RemoveQuietModeDialog();

// The hidden top-level window that lets another process ask for the action
// dialog. The tick calls this on every tick after initialisation; it creates
// the window the first time only.
void CreateHiddenWindowOnce();

// Destroys the Xt application context if there is one; the exit path calls it.
void DestroyApplicationContext();
