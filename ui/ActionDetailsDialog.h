#pragma once

// The action details dialog: the script preview of one pending action, with
// an OK button. The action request dialog stays disabled while it is open;
// OK closes it and queues DetailsClosed, whose handling enables the action
// dialog again. It never talks to the client itself. At most one exists;
// built when shown, destroyed when hidden.

#include "protocol/ActionRequest.h"

#include <X11/Intrinsic.h>

namespace ActionDetailsDialog {

// Shows the Preview of the pending entry `entry` (which carries `actionId`),
// unless the dialog is open already (then nothing changes). An entry no
// longer pending, or one without a Preview, shows an empty text. Does nothing before the
// display is open. A dialog that cannot be built ends the program (the client
// is told "ActionDetailsDialog").
void Show(unsigned long long actionId, EntryNumber entry);

// Nothing to refresh: the preview is fixed once shown.
void Update();

// Destroys the dialog, if shown.
void Hide();

bool IsShown();
// The shell while shown, else null.
Widget Shell();

}  // namespace ActionDetailsDialog
