#pragma once

// What a person or a window manager does to a window, sent through the X
// server so the program meets it as it would on a desktop. Header-only: only
// tests that link Xlib and XTest include it, and they include it last (Xlib
// defines None, True, False and friends as macros).

#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>

// A press and release of `button` (1 the first; 4 and 5 a notch of the wheel
// up and down) at (x, y) inside `window`.
inline void ClickThroughServer(Display* display, Window window, int x, int y, unsigned button = 1) {
    int rootX = 0, rootY = 0;
    Window child = 0;
    XTranslateCoordinates(display, window, DefaultRootWindow(display), x, y, &rootX, &rootY, &child);
    XTestFakeMotionEvent(display, -1, rootX, rootY, CurrentTime);
    XTestFakeButtonEvent(display, button, True, CurrentTime);
    XTestFakeButtonEvent(display, button, False, CurrentTime);
    XSync(display, False);
}

// A press and release of the key `keysym` with the pointer at (x, y) inside
// `window`, where the focus follows it without a window manager.
inline void KeyThroughServer(Display* display, Window window, int x, int y, KeySym keysym) {
    int rootX = 0, rootY = 0;
    Window child = 0;
    XTranslateCoordinates(display, window, DefaultRootWindow(display), x, y, &rootX, &rootY, &child);
    XTestFakeMotionEvent(display, -1, rootX, rootY, CurrentTime);
    const KeyCode key = XKeysymToKeycode(display, keysym);
    XTestFakeKeyEvent(display, key, True, CurrentTime);
    XTestFakeKeyEvent(display, key, False, CurrentTime);
    XSync(display, False);
}

// Whether `window` announces WM_DELETE_WINDOW as its one protocol; then sends
// it the window manager's close, which the caller's next pump delivers.
inline bool AnnouncesDeleteWindowThenIsClosed(Display* display, Window window) {
    const Atom deleteWindow = XInternAtom(display, "WM_DELETE_WINDOW", False);
    Atom* announced = nullptr;
    int count = 0;
    const bool only = XGetWMProtocols(display, window, &announced, &count) != 0 && count == 1 &&
                      announced[0] == deleteWindow;
    if (announced != nullptr) XFree(announced);
    XEvent close{};
    close.xclient = {ClientMessage, 0, False, display, window, XInternAtom(display, "WM_PROTOCOLS", False), 32, {}};
    close.xclient.data.l[0] = static_cast<long>(deleteWindow);
    XSendEvent(display, window, False, NoEventMask, &close);
    return only;
}
