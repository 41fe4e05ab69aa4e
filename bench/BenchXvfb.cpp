#include "bench/BenchXvfb.h"

#include <stdlib.h>
#include <unistd.h>

#include <fstream>

#include "app/Settings.h"
#include "ui/DefaultFontSet.h"
#include "ui/KeyboardFocus.h"
#include "ui/XGlobals.h"

#include <X11/Intrinsic.h>

double Milliseconds(BenchClock::duration d) { return std::chrono::duration<double, std::milli>(d).count(); }

bool BenchXvfb::Start() {
    if (!server_.Start()) return false;
    name_ = server_.DisplayName();
    setenv("DISPLAY", name_.c_str(), 1);
    setenv("XFILESEARCHPATH", "/nonexistent/%N", 1);
    setenv("XUSERFILESEARCHPATH", "/nonexistent/%N", 1);
    observer_ = XOpenDisplay(nullptr);
    if (observer_ == nullptr) return false;
    XSelectInput(observer_, DefaultRootWindow(observer_), SubstructureNotifyMask);
    XSync(observer_, True);
    return true;
}

void BenchXvfb::Stop() {
    if (observer_ != nullptr) XCloseDisplay(observer_);
    observer_ = nullptr;
    server_.Stop();
}

Window NextMap(Display* observer) {
    const auto end = BenchClock::now() + std::chrono::seconds(10);
    while (BenchClock::now() < end) {
        while (XPending(observer) > 0) {
            XEvent event;
            XNextEvent(observer, &event);
            if (event.type == MapNotify) return event.xmap.window;
        }
        usleep(100);
    }
    return 0;
}

bool OpenProgramDisplay() {
    international = false;
    XtToolkitInitialize();
    app_context = XtCreateApplicationContext();
    char name[] = "ZAMClientUI";
    char* args[] = {name, nullptr};
    int count = 1;
    display = XtOpenDisplay(app_context, nullptr, nullptr, "XZAMClientUI", nullptr, 0, &count, args);
    if (display == nullptr) return false;
    ConfigValidDefaultFontSet();
    KeyboardFocus::RegisterActions(app_context);  // as the program does before any widget
    return true;
}

