#pragma once

// Puts each dialog on the monitor the user is looking at (the one that holds
// the pointer) and keeps it on a monitor that is there: every dialog placed
// here is remembered with the monitor it was placed on until its shell is
// destroyed, and the tick moves it back when that monitor goes away (a
// laptop taken off its dock, a projector unplugged). The arithmetic is
// MonitorPlacement's; this file only asks the server and moves windows.

#include <X11/Intrinsic.h>

enum class Placement {
    // Centred on the monitor: every dialog but the messages.
    Centred,
    // A message: set a step right of and below the last message still open
    // on the same monitor, so that none hides another; centred when there is
    // none.
    Cascaded,
};

// Places a realized, not yet mapped shell by its current size and remembers
// it. Without multi-monitor support on the server the whole screen is the
// one monitor.
void PlaceDialog(Widget shell, Placement placement = Placement::Centred);

// Called once a tick: moves every placed dialog whose monitor is no longer
// reported onto the monitor that holds the pointer, as PlaceDialog would
// place it now. Asks the server nothing while no dialog is placed.
void KeepDialogsOnMonitors();

// Forgets every placed dialog without touching its widgets: the application
// context is being closed.
void ForgetPlacedDialogs();
