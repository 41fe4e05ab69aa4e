#pragma once

// How the action dialog asks for the user: brought to the front at the user's
// own request, or marked urgent (the window manager's urgency hint, which Xt
// keeps in WM_HINTS as the shell's "urgency" resource) until the user touches
// it. When to do which is the dispatch's decision (app/Attention.h).

#include <X11/Intrinsic.h>

// Maps `shell` raised, which brings it back from being minimised (iconified)
// too, and asks a window manager that follows the EWMH conventions to
// activate it, as a request of the application's (source indication 1).
// Nothing for a null or unrealized shell.
void RaiseAndActivate(Widget shell);

// Sets the urgency hint of `shell`. Nothing for a null shell.
void MarkUrgent(Widget shell);

// From now on a button or key press anywhere in `shell`'s widgets, or the
// keyboard focus coming to it, clears its urgency hint. Call once, after the
// widgets are made.
void ClearUrgencyOnTouch(Widget shell);
