// Two monitors set through RandR before the program starts: dialogs open on
// the pointer's, messages step aside, and all follow the pointer when their
// monitor goes away.
#include <gtest/gtest.h>

#include "tests/e2e/LiveProgram.h"

#include <X11/Xlib.h>
#include <X11/extensions/Xrandr.h>

namespace {

// Whether the window, borders included, lies on the 1280x1024 monitor at
// `left`; its outer corner in `at`.
bool OnMonitor(Display* x, Window window, int left, XPoint* at) {
    XWindowAttributes box{};
    int rootX = 0, rootY = 0;
    Window child = 0;
    if (!XGetWindowAttributes(x, window, &box) || !XTranslateCoordinates(x, window, DefaultRootWindow(x),
                                                                         -box.border_width, -box.border_width,
                                                                         &rootX, &rootY, &child)) {
        return false;
    }
    *at = {static_cast<short>(rootX), static_cast<short>(rootY)};
    return rootX >= left && rootX + box.width + 2 * box.border_width <= left + 1280 && rootY >= 0 &&
           rootY + box.height + 2 * box.border_width <= 1024;
}

TEST(MonitorFlows, DialogsOpenOnThePointersMonitorAndFollowItWhenTheirsGoes) {
    LiveProgram program("2560x1024x24");
    Display* x = program.X();
    ASSERT_NE(x, nullptr);
    const Window root = DefaultRootWindow(x);
    for (const int left : {0, 1280}) {
        XRRMonitorInfo* monitor = XRRAllocateMonitor(x, 0);
        monitor->name = XInternAtom(x, left == 0 ? "LEFT" : "RIGHT", False);
        monitor->x = left, monitor->width = 1280, monitor->height = 1024, monitor->mwidth = 338, monitor->mheight = 270;
        XRRSetMonitor(x, root, monitor);
        XRRFreeMonitors(monitor);
    }
    XWarpPointer(x, None, root, 0, 0, 0, 0, 1900, 500);
    XSync(x, False);

    Window shown[3] = {program.StartWithActions({"action id=1 title=\"First\""}).shell, 0, 0};
    program.Send({"message id=2 title=\"One\" text=\"first\"", "message id=3 title=\"Two\" text=\"second\""});
    program.WaitForDialog("One", &shown[1]);
    program.WaitForDialog("Two", &shown[2]);
    XPoint at[3]{};
    for (int i = 0; i < 3; ++i) EXPECT_TRUE(OnMonitor(x, shown[i], 1280, &at[i])) << i;
    EXPECT_GE(at[2].x, at[1].x + 20);
    EXPECT_GE(at[2].y, at[1].y + 20);

    XRRDeleteMonitor(x, root, XInternAtom(x, "RIGHT", False));
    XWarpPointer(x, None, root, 0, 0, 0, 0, 500, 500);
    XSync(x, False);
    EXPECT_TRUE(program.WaitUntil([&] {
        for (int i = 0; i < 3; ++i) {
            if (!OnMonitor(x, shown[i], 0, &at[i])) return false;
        }
        return true;
    }));
    EXPECT_EQ(program.CloseAndWait(), 0);
}

}  // namespace
