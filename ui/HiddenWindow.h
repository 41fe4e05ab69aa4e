#pragma once

// The hidden top-level window "ZAMClientUIHiddenWindow". Another process that
// finds it by its name can send it a ClientMessage whose data begins with
// "open" to bring up the action dialog. It is realized, so it owns an X
// window, and never mapped.

#include <X11/Intrinsic.h>

constexpr char kHiddenWindowName[] = "ZAMClientUIHiddenWindow";

// The hidden shell; null until the first tick after initialisation made it.
extern Widget zamHidden;

// Makes, realizes and keeps the hidden shell the first time it is called with
// the display open; does nothing before that and ever after.
void CreateHiddenWindowOnce();

// Queues OpenDialog for an "open" ClientMessage; ignores every other event.
void HiddenWindowEventHandler(Widget widget, XtPointer closure, XEvent* event, Boolean* continueDispatch);
