// The program under a real window manager (twm) on a private Xvfb: what the
// window manager learns about each dialog, and how the action dialog comes
// back to the user, seen through the X server. The client windows lie inside
// twm's frames, not on the root.

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <fstream>

#include <gtest/gtest.h>

#include "client/OpenDialogRequest.h"
#include "tests/e2e/LiveProgram.h"
#include "tests/support/ChildProcess.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace {

// Fonts every Xvfb has, a place without asking the user (interactive placement
// grabs the server), and the program's own position taken as it is.
constexpr char kTwmrc[] = "TitleFont \"fixed\"\nMenuFont \"fixed\"\nIconFont \"fixed\"\nResizeFont \"fixed\"\n"
                          "IconManagerFont \"fixed\"\nRandomPlacement\nUsePPosition \"on\"\n";

// twm on the program's display, ended with SIGKILL by the ChildProcess, and
// with the test's thread should the test die first.
bool StartTwm(ChildProcess& twm, LiveProgram& program) {
    const std::string twmrc = program.Files().Path("twmrc");
    std::ofstream(twmrc) << kTwmrc;
    const int devNull = open("/dev/null", O_RDWR | O_CLOEXEC);
    twm.SetDeathSignal(SIGKILL);
    const bool started = devNull >= 0 && twm.Exec("/usr/bin/twm",
                                                  {"DISPLAY=" + program.DisplayName(), "PATH=/usr/bin:/bin",
                                                   "HOME=" + program.Files().Root()},
                                                  {"-f", twmrc}, {{0, devNull}, {1, devNull}, {2, devNull}});
    if (devNull >= 0) close(devNull);
    return started;
}

Window ParentOf(Display* display, Window window) {
    Window root = 0, parent = 0;
    Window* children = nullptr;
    unsigned int count = 0;
    if (XQueryTree(display, window, &root, &parent, &children, &count) == 0) return 0;
    if (children != nullptr) XFree(children);
    return parent;
}

// The child of the root that holds `window`: its frame under a window manager.
Window FrameOf(Display* display, Window window) {
    for (Window parent = ParentOf(display, window); parent != 0 && parent != DefaultRootWindow(display);
         parent = ParentOf(display, window)) {
        window = parent;
    }
    return window;
}

// A property's items: the bytes of a format-8 one, the values of a format-32 one.
std::string Text(Display* display, Window window, const char* property, const char* type) {
    Atom actualType = 0;
    int format = 0;
    unsigned long count = 0, after = 0;
    unsigned char* data = nullptr;
    std::string text;
    if (XGetWindowProperty(display, window, XInternAtom(display, property, False), 0, 1024, False,
                           XInternAtom(display, type, False), &actualType, &format, &count, &after, &data) == Success &&
        format == 8 && data != nullptr) {
        text.assign(reinterpret_cast<char*>(data), count);
    }
    if (data != nullptr) XFree(data);
    return text;
}

std::vector<long> Values(Display* display, Window window, const char* property, Atom type) {
    Atom actualType = 0;
    int format = 0;
    unsigned long count = 0, after = 0;
    unsigned char* data = nullptr;
    std::vector<long> values;
    if (XGetWindowProperty(display, window, XInternAtom(display, property, False), 0, 16, False, type, &actualType,
                           &format, &count, &after, &data) == Success &&
        format == 32 && data != nullptr) {
        values.assign(reinterpret_cast<long*>(data), reinterpret_cast<long*>(data) + count);
    }
    if (data != nullptr) XFree(data);
    return values;
}

std::string ClassOf(Display* display, Window window) {
    XClassHint hint{};
    if (XGetClassHint(display, window, &hint) == 0) return "";
    const std::string both = std::string(hint.res_name) + "/" + hint.res_class;
    XFree(hint.res_name);
    XFree(hint.res_class);
    return both;
}

bool Urgent(Display* display, Window window) {
    XWMHints* hints = XGetWMHints(display, window);
    const bool urgent = hints != nullptr && (hints->flags & XUrgencyHint) != 0;
    if (hints != nullptr) XFree(hints);
    return urgent;
}

bool Viewable(Display* display, Window window) {
    XWindowAttributes attributes{};
    return XGetWindowAttributes(display, window, &attributes) != 0 && attributes.map_state == IsViewable;
}

// The index of `frame` among the root's children, bottom to top.
long StackingPlace(Display* display, Window frame) {
    Window root = 0, parent = 0;
    Window* children = nullptr;
    unsigned int count = 0;
    long place = -1;
    if (XQueryTree(display, DefaultRootWindow(display), &root, &parent, &children, &count) == 0) return place;
    for (unsigned int i = 0; i < count; ++i) {
        if (children[i] == frame) place = i;
    }
    if (children != nullptr) XFree(children);
    return place;
}

// Out of every window, so the window manager gives no dialog the focus (which
// clears an urgency hint) unless the test clicks it.
void PointerAway(Display* display) {
    XWarpPointer(display, None, DefaultRootWindow(display), 0, 0, 0, 0, DisplayWidth(display, 0) - 1,
                 DisplayHeight(display, 0) - 1);
    XSync(display, False);
}

TEST(WindowManager, TheDialogsIdentifyThemselvesAskForAttentionAndStayAboveTheActionDialog) {
    LiveProgram program;
    ChildProcess twm;
    ASSERT_TRUE(StartTwm(twm, program));
    Display* x = program.X();
    PointerAway(x);
    const ActionDialogWindows dialog = program.StartWithActions({"action id=1 title=\"First\" confirm=\"Sure?\""});
    ASSERT_NE(dialog.shell, 0u);
    ASSERT_TRUE(program.WaitUntil([&] { return FrameOf(x, dialog.shell) != dialog.shell; })) << "never framed";

    EXPECT_EQ(ClassOf(x, dialog.shell), "ZAMClientUI/XZAMClientUI");
    EXPECT_EQ(Text(x, dialog.shell, "_NET_WM_NAME", "UTF8_STRING"), "Action Requests");
    EXPECT_EQ(Text(x, dialog.shell, "_NET_WM_ICON_NAME", "UTF8_STRING"), "Action Requests");
    EXPECT_EQ(Values(x, dialog.shell, "_NET_WM_WINDOW_TYPE", XA_ATOM),
              std::vector<long>{static_cast<long>(XInternAtom(x, "_NET_WM_WINDOW_TYPE_NORMAL", False))});
    EXPECT_EQ(Values(x, dialog.shell, "_NET_WM_PID", XA_CARDINAL).size(), 1u);

    // A new action over the shown dialog marks it urgent; the user's click clears it.
    EXPECT_FALSE(Urgent(x, dialog.shell));
    program.Send({"action id=2 title=\"Second\""});
    EXPECT_TRUE(program.WaitUntil([&] { return Urgent(x, dialog.shell); })) << "never urgent";
    program.ClickRow(dialog.list, 0);
    EXPECT_TRUE(program.WaitUntil([&] { return !Urgent(x, dialog.shell); })) << "still urgent after a click";
    PointerAway(x);

    // Minimised, it comes back on the user's "open" alone.
    XIconifyWindow(x, dialog.shell, DefaultScreen(x));
    ASSERT_TRUE(program.WaitUntil([&] { return !Viewable(x, dialog.shell); })) << "never iconified";
    std::string error;
    ASSERT_EQ(SendOpenRequest(program.DisplayName(), std::chrono::seconds(10), error), 1) << error;
    EXPECT_TRUE(program.WaitUntil([&] { return Viewable(x, dialog.shell); })) << "still iconified after open";

    // The confirmation belongs to the action dialog and lies above it.
    program.Click(dialog.take);
    Window confirmation = 0;
    ASSERT_EQ(program.WaitForDialog("Confirmation Required", &confirmation).size(), 5u);
    EXPECT_TRUE(program.WaitUntil([&] { return Viewable(x, confirmation); }));
    Window owner = 0;
    EXPECT_TRUE(XGetTransientForHint(x, confirmation, &owner) != 0 && owner == dialog.shell);
    EXPECT_GT(StackingPlace(x, FrameOf(x, confirmation)), StackingPlace(x, FrameOf(x, dialog.shell)));
    EXPECT_EQ(ClassOf(x, confirmation), "ZAMClientUI/XZAMClientUI");
    EXPECT_EQ(Values(x, confirmation, "_NET_WM_WINDOW_TYPE", XA_ATOM),
              std::vector<long>{static_cast<long>(XInternAtom(x, "_NET_WM_WINDOW_TYPE_DIALOG", False))});
    EXPECT_EQ(program.CloseAndWait(), 0);
}

}  // namespace
