#pragma once

// The one-second time-out that drives the program once the X loop runs.
// Exactly one is pending at any time: every run adds the next one as it
// leaves, whether it returns or throws.

#include <X11/Intrinsic.h>

constexpr unsigned long kTickMilliseconds = 1000;

// Adds the first time-out. Once, after the application context exists.
void StartClientUITick();

// The time-out's procedure: the tick's work (RunClientUITick), the shown
// dialogs kept on monitors that are there (KeepDialogsOnMonitors), then the
// next time-out.
void ClientUITick(XtPointer closure, XtIntervalId* id);
