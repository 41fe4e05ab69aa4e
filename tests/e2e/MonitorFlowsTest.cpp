// Dialogs on a screen of two monitors, set through RandR on the test's own
// Xvfb before the program starts: each opens on the monitor that holds the
// pointer, messages step aside from each other, and all come back to the
// pointer's monitor when theirs goes away.
#include <gtest/gtest.h>

#include <array>
#include <string>

#include "tests/e2e/LiveProgram.h"

#include <X11/Xlib.h>
#include <X11/extensions/Xrandr.h>

namespace {

constexpr int kMonitorWidth = 1280;
constexpr int kMonitorHeight = 1024;

// Where a window lies on the screen, its borders included.
struct Extent {
    int left = 0, top = 0, right = 0, bottom = 0;  // right and bottom: just outside
};

Extent ExtentOf(Display* x, Window window) {
    XWindowAttributes attributes{};
    int left = 0, top = 0;
    Window child = 0;
    if (XGetWindowAttributes(x, window, &attributes) == 0 ||
        !XTranslateCoordinates(x, window, DefaultRootWindow(x), 0, 0, &left, &top, &child)) {
        return {};
    }
    const int border = attributes.border_width;
    return {left - border, top - border, left + attributes.width + border, top + attributes.height + border};
}

bool OnMonitor(const Extent& extent, int monitorLeft) {
    return extent.right > extent.left && extent.left >= monitorLeft && extent.right <= monitorLeft + kMonitorWidth &&
           extent.top >= 0 && extent.bottom <= kMonitorHeight;
}

void SetMonitor(Display* x, const char* name, int left) {
    XRRMonitorInfo* monitor = XRRAllocateMonitor(x, 0);
    monitor->name = XInternAtom(x, name, False);
    monitor->x = left;
    monitor->width = kMonitorWidth;
    monitor->height = kMonitorHeight;
    monitor->mwidth = 338;  // 96 dpi
    monitor->mheight = 270;
    XRRSetMonitor(x, DefaultRootWindow(x), monitor);
    XRRFreeMonitors(monitor);
}

void MovePointer(Display* x, int toX, int toY) {
    XWarpPointer(x, None, DefaultRootWindow(x), 0, 0, 0, 0, toX, toY);
    XSync(x, False);
}

TEST(MonitorFlows, DialogsOpenOnThePointersMonitorAndFollowItWhenTheirsGoes) {
    LiveProgram program("2560x1024x24");
    Display* x = program.X();
    ASSERT_NE(x, nullptr);
    SetMonitor(x, "LEFT", 0);
    SetMonitor(x, "RIGHT", kMonitorWidth);
    MovePointer(x, 1900, 500);

    const Window action = program.StartWithActions({"action id=1 title=\"First\""}).shell;
    EXPECT_TRUE(OnMonitor(ExtentOf(x, action), kMonitorWidth));
    program.Send({"message id=2 title=\"One\" text=\"first\"", "message id=3 title=\"Two\" text=\"second\""});
    std::array<Window, 3> shown{action, 0, 0};
    program.WaitForDialog("One", &shown[1]);
    program.WaitForDialog("Two", &shown[2]);
    const Extent one = ExtentOf(x, shown[1]);
    const Extent two = ExtentOf(x, shown[2]);
    EXPECT_TRUE(OnMonitor(one, kMonitorWidth));
    EXPECT_TRUE(OnMonitor(two, kMonitorWidth));
    EXPECT_GE(two.left, one.left + 20);
    EXPECT_GE(two.top, one.top + 20);

    XRRDeleteMonitor(x, DefaultRootWindow(x), XInternAtom(x, "RIGHT", False));
    MovePointer(x, 500, 500);
    EXPECT_TRUE(program.WaitUntil([&] {
        for (const Window window : shown) {
            if (!OnMonitor(ExtentOf(x, window), 0)) return false;
        }
        return true;
    }));
    EXPECT_EQ(program.CloseAndWait(), 0);
}

}  // namespace
