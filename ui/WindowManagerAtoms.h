#pragma once

// The atoms of the window-manager conventions the dialogs write or send,
// interned together in one round trip the first time a display asks, and
// again only for a display opened later.

#include <X11/Xlib.h>

struct WindowManagerAtoms {
    Atom utf8String = None;
    Atom name = None;      // _NET_WM_NAME
    Atom iconName = None;  // _NET_WM_ICON_NAME
    Atom windowType = None;
    Atom typeDialog = None;
    Atom typeNormal = None;
    Atom pid = None;  // _NET_WM_PID
    Atom activeWindow = None;
};

// An atom the server would not intern stays None; its hint is skipped.
const WindowManagerAtoms& WindowManagerAtomsOf(Display* display);
