#pragma once

// The confirmation dialog: an action's confirmation message, which the user
// must accept before the action is taken, with Cancel and OK. The action
// request dialog stays disabled while it is open. OK closes it and queues
// ConfirmAccepted, Cancel closes it and queues ConfirmDeclined; the handling
// of those takes the action (or goes on with a take-all), or abandons it and
// enables the action dialog again. It never talks to the client itself.

#include "protocol/ActionRequest.h"

#include <X11/Intrinsic.h>

namespace ConfirmationDialog {

// Shows the title and PreActionMessage of the pending entry `entry` (which
// carries `actionId`): that entry's own, even when another entry has the same
// ID. Does nothing when the dialog is open already. When the entry is no
// longer pending, nothing is shown and ConfirmDeclined is queued at once, so
// the action dialog never stays disabled and nothing is taken unconfirmed.
// Does nothing before the display is open. A dialog that cannot be built ends
// the program (the client is told "ConfirmationDialog").
void Show(unsigned long long actionId, EntryNumber entry);

// Nothing to refresh.
void Update();

// Destroys the dialog, if shown.
void Hide();

bool IsShown();
// The shell while shown, else null.
Widget Shell();

}  // namespace ConfirmationDialog
