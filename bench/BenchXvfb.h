#pragma once

// What the benchmarks that show windows share: a private Xvfb that tells its
// own display number, a second connection that watches the root for maps,
// the toolkit opened as the program opens it, and readings of /proc.

#include <chrono>
#include <string>

#include "tests/support/Xvfb.h"

#include <X11/Xlib.h>

using BenchClock = std::chrono::steady_clock;

double Milliseconds(BenchClock::duration d);

// Starts the tests' private Xvfb, points DISPLAY at it with no resource files, and opens `observer` on it, selecting SubstructureNotify
// on the root. False when either failed; Stop() is safe either way.
class BenchXvfb {
public:
    BenchXvfb() = default;
    ~BenchXvfb() { Stop(); }
    BenchXvfb(const BenchXvfb&) = delete;
    BenchXvfb& operator=(const BenchXvfb&) = delete;

    bool Start();
    void Stop();

    const std::string& Name() const { return name_; }
    Display* Observer() const { return observer_; }

private:
    XvfbServer server_;
    std::string name_;
    Display* observer_ = nullptr;
};

// Waits on `observer` for the next top-level MapNotify; its window, or 0
// after 10 s.
Window NextMap(Display* observer);

// Opens the toolkit on DISPLAY into the program's globals (app_context,
// display) with the default font set, as the program does at start-up.
bool OpenProgramDisplay();

