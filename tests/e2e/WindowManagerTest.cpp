// The program under a real window manager (twm) on a private Xvfb: what the
// window manager learns about the dialogs, and how the action dialog comes
// back to the user. The client windows lie inside twm's frames.

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>

#include <gtest/gtest.h>

#include "client/OpenDialogRequest.h"
#include "tests/e2e/LiveProgram.h"
#include "tests/support/ChildProcess.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace {

// Fonts every Xvfb has, and placement without asking the user (interactive
// placement grabs the server) at the position the program asks for.
constexpr char kTwmrc[] = "TitleFont \"fixed\"\nMenuFont \"fixed\"\nIconFont \"fixed\"\nResizeFont \"fixed\"\n"
                          "IconManagerFont \"fixed\"\nRandomPlacement\nUsePPosition \"on\"\n";

// twm on the program's display; it gets SIGKILL from the ChildProcess, or
// from its death signal should the test die first.
bool StartTwm(ChildProcess& twm, LiveProgram& program) {
    const std::string twmrc = program.Files().Path("twmrc");
    std::ofstream(twmrc) << kTwmrc;
    const int devNull = open("/dev/null", O_RDWR | O_CLOEXEC);
    twm.SetDeathSignal(SIGKILL);
    const bool started =
        devNull >= 0 && twm.Exec("/usr/bin/twm", {"DISPLAY=" + program.DisplayName(), "HOME=" + program.Files().Root()},
                                 {"-f", twmrc}, {{0, devNull}, {1, devNull}, {2, devNull}});
    if (devNull >= 0) close(devNull);
    return started;
}

// A property's bytes if it is of `type`, else empty.
std::string Property(Display* x, Window window, const char* name, const char* type) {
    XTextProperty value{};
    if (XGetTextProperty(x, window, &value, XInternAtom(x, name, False)) == 0) return "";
    const std::size_t bytes = value.nitems * static_cast<std::size_t>(value.format == 32 ? sizeof(long) : 1);
    std::string text = value.encoding == XInternAtom(x, type, False)
                           ? std::string(reinterpret_cast<const char*>(value.value), bytes) : "";
    XFree(value.value);
    return text;
}

std::string AtomBytes(Display* x, const char* name) {
    const long atom = static_cast<long>(XInternAtom(x, name, False));
    return std::string(reinterpret_cast<const char*>(&atom), sizeof atom);
}

bool Urgent(Display* x, Window window) {
    XWMHints* hints = XGetWMHints(x, window);
    const bool urgent = hints != nullptr && (hints->flags & XUrgencyHint) != 0;
    if (hints != nullptr) XFree(hints);
    return urgent;
}

bool Viewable(Display* x, Window window) {
    XWindowAttributes attributes{};
    return XGetWindowAttributes(x, window, &attributes) != 0 && attributes.map_state == IsViewable;
}

// Out of every window, so twm gives no dialog the focus (which clears an
// urgency hint) unless the test clicks it.
void PointerAway(Display* x) {
    XWarpPointer(x, None, DefaultRootWindow(x), 0, 0, 0, 0, DisplayWidth(x, 0) - 1, DisplayHeight(x, 0) - 1);
    XSync(x, False);
}

TEST(WindowManager, TheDialogsIdentifyThemselvesAskForAttentionAndStayAboveTheActionDialog) {
    LiveProgram program;
    ChildProcess twm;
    ASSERT_TRUE(StartTwm(twm, program));
    Display* x = program.X();
    PointerAway(x);
    const ActionDialogWindows dialog = program.StartWithActions({"action id=1 title=\"First\" confirm=\"Sure?\""});
    // twm's frame around a client window is its parent.
    ASSERT_TRUE(program.WaitUntil([&] { return program.Parent(dialog.shell) != DefaultRootWindow(x); })) << "unframed";
    const std::string windowClass("ZAMClientUI\0XZAMClientUI\0", 25);
    EXPECT_EQ(Property(x, dialog.shell, "WM_CLASS", "STRING"), windowClass);
    EXPECT_EQ(Property(x, dialog.shell, "_NET_WM_NAME", "UTF8_STRING"), "Action Requests");
    EXPECT_EQ(Property(x, dialog.shell, "_NET_WM_ICON_NAME", "UTF8_STRING"), "Action Requests");
    EXPECT_EQ(Property(x, dialog.shell, "_NET_WM_WINDOW_TYPE", "ATOM"), AtomBytes(x, "_NET_WM_WINDOW_TYPE_NORMAL"));

    // A new action over the shown dialog marks it urgent; the user's click clears it.
    EXPECT_FALSE(Urgent(x, dialog.shell));
    program.Send({"action id=2 title=\"Second\""});
    EXPECT_TRUE(program.WaitUntil([&] { return Urgent(x, dialog.shell); })) << "never urgent";
    program.ClickRow(dialog.list, 0);
    EXPECT_TRUE(program.WaitUntil([&] { return !Urgent(x, dialog.shell); })) << "still urgent after a click";
    PointerAway(x);

    // Minimised, it comes back on the user's "open".
    XIconifyWindow(x, dialog.shell, DefaultScreen(x));
    ASSERT_TRUE(program.WaitUntil([&] { return !Viewable(x, dialog.shell); })) << "never iconified";
    std::string error;
    ASSERT_EQ(SendOpenRequest(program.DisplayName(), std::chrono::seconds(10), error), 1) << error;
    EXPECT_TRUE(program.WaitUntil([&] { return Viewable(x, dialog.shell); })) << "still iconified after open";
    // Withdrawn behind the program's back (as a window manager may answer a
    // raise), it comes back on the next "open", and the program goes on.
    XWithdrawWindow(x, dialog.shell, DefaultScreen(x));
    ASSERT_TRUE(program.WaitUntil([&] { return !Viewable(x, dialog.shell); })) << "never withdrawn";
    ASSERT_EQ(SendOpenRequest(program.DisplayName(), std::chrono::seconds(10), error), 1) << error;
    EXPECT_TRUE(program.WaitUntil([&] { return Viewable(x, dialog.shell); })) << "still withdrawn after open";

    // The confirmation belongs to the action dialog and lies above it.
    program.Click(dialog.take);
    Window confirmation = 0, owner = 0;
    ASSERT_EQ(program.WaitForDialog("Confirmation Required", &confirmation).size(), 5u);
    EXPECT_TRUE(XGetTransientForHint(x, confirmation, &owner) != 0 && owner == dialog.shell);
    // Children lists the root's windows top to bottom.
    const std::vector<Window> stacked = program.Children(DefaultRootWindow(x));
    EXPECT_LT(std::find(stacked.begin(), stacked.end(), program.Parent(confirmation)),
              std::find(stacked.begin(), stacked.end(), program.Parent(dialog.shell)));
    EXPECT_EQ(Property(x, confirmation, "WM_CLASS", "STRING"), windowClass);
    EXPECT_EQ(Property(x, confirmation, "_NET_WM_WINDOW_TYPE", "ATOM"), AtomBytes(x, "_NET_WM_WINDOW_TYPE_DIALOG"));
    EXPECT_EQ(program.CloseAndWait(), 0);
}

}  // namespace
