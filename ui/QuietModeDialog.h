#pragma once

// The quiet-mode notice: actions are not available between the start and the
// end of a quiet period. At most one is open; "ok" closes it and queues
// QuietModeClosed, whose handling enables the action dialog again.

#include "base/time/Instant.h"

#include <X11/Intrinsic.h>

namespace QuietModeDialog {

// Shows the notice for the period, unless one is open already: a second
// period never replaces the first one's text. Does nothing before the display
// is open. A notice that cannot be built ends the program (the client is told
// "QuietModeDialog").
void Show(Instant start, Instant end);

// Closes the notice, if open.
void Remove();

bool IsShown();
// The shell while shown, else null.
Widget Shell();

}  // namespace QuietModeDialog
