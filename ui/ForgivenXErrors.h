#pragma once

// Requests whose failure the program can live without: hints for the window
// manager. An X error ends the program (X_ErrorHandler), but a hint the
// window manager misses is no reason to. A guard notes the serial numbers of
// the requests made in its scope, so no round trip is needed to tell their
// errors (which arrive later) from any other.

#include <X11/Xlib.h>

class ForgivingXErrors {
public:
    explicit ForgivingXErrors(Display* display);
    ~ForgivingXErrors();
    ForgivingXErrors(const ForgivingXErrors&) = delete;
    ForgivingXErrors& operator=(const ForgivingXErrors&) = delete;

private:
    Display* display_;
    unsigned slot_;
};

// Whether `event` is the failure of a request made under a ForgivingXErrors
// (of the last few; older ones have long been answered).
bool IsForgivenXError(const XErrorEvent& event);
