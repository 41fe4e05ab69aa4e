#pragma once

// Closing a window from the window manager. Every dialog shell announces
// WM_DELETE_WINDOW, so the window manager sends a message instead of cutting
// the connection; the program binds no action to it, so the dialog stays,
// unless a site's resource file binds SystemMenuClose.

#include <X11/Intrinsic.h>

// The global action "SystemMenuClose": a WM_DELETE_WINDOW message from the
// window manager ends the program (status 0); any other event is ignored.
void SystemMenuClose(Widget widget, XEvent* event, String* params, Cardinal* paramCount);

// True for a ClientMessage of type WM_PROTOCOLS whose first word is
// WM_DELETE_WINDOW. The atoms are only looked up, never made: if the server
// has never heard of them, no message can carry them.
bool IsDeleteWindowMessage(Display* display, const XEvent& event);

// Realizes the shell and announces WM_DELETE_WINDOW on its window. Call it
// before the shell is first shown.
void AnnounceDeleteWindow(Widget shell);
