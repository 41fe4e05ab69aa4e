// The X side in this process, on the test program's own Xvfb.

#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "app/ClientLink.h"
#include "app/Exit.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/ForkedCheck.h"
#include "tests/support/ProgramSettings.h"
#include "tests/support/Xvfb.h"
#include "ui/DefaultFontSet.h"
#include "ui/DialogPlacement.h"
#include "ui/FontOwners.h"
#include "ui/HiddenWindow.h"
#include "ui/WidgetHelpers.h"
#include "ui/WindowManagerClose.h"
#include "ui/XApplication.h"
#include "ui/XDialogCalls.h"
#include "ui/XGlobals.h"

#include <X11/Shell.h>
#include <X11/StringDefs.h>
#include <X11/Xaw/List.h>
#include <X11/Xaw/Viewport.h>

// The Athena vendor shell keeps a small input-method record per shell that
// closing the display does not free: the library's, not ours. The toolkit has
// no frame pointers, so only the slow unwinder sees that it comes from there.
extern "C" const char* __lsan_default_suppressions() {
    return "leak:_XawImInitialize\n";
}
extern "C" const char* __asan_default_options() {
    return "fast_unwind_on_malloc=0";
}

namespace {

::testing::Environment* const xvfb = AddXvfbEnvironment();

std::vector<int> exitStatuses;  // of the endings ExitCleanup went through

// The program's X globals, opened the way InitXApp opens them.
class XApp : public ::testing::Test {
protected:
    void SetUp() override {
        exitStatuses.clear();
        SetExitFunctionForTesting([](int status, const char*) { exitStatuses.push_back(status); });
        static XDialogCalls screen;  // as main wires it
        WireDialogCalls(&screen);
        XtToolkitInitialize();
        app_context = XtCreateApplicationContext();
        int argc = 1;
        char name[] = "XAppTest";
        char* argv[] = {name, nullptr};
        display = XtOpenDisplay(app_context, nullptr, nullptr, "XZAMClientUI", nullptr, 0, &argc, argv);
        ASSERT_NE(display, nullptr);
    }
    void TearDown() override {
        DestroyApplicationContext();
        SetExitFunctionForTesting(nullptr);
        ResetProgramSettings();
    }

    Widget SizedShell() {
        return XtVaAppCreateShell("dialog", nullptr, topLevelShellWidgetClass, display, XtNwidth, 200, XtNheight, 100,
                                  nullptr);
    }

    static XEvent ClientMessageEvent(Window window, Atom type, int format, Atom first = None) {
        XEvent event{};
        event.xclient.type = ClientMessage;
        event.xclient.window = window;
        event.xclient.message_type = type;
        event.xclient.format = format;
        event.xclient.data.l[0] = static_cast<long>(first);
        return event;
    }
};

// One test: the window is made once per process. Its name is checked on the
// real program.
TEST_F(XApp, TheHiddenWindowIsMadeOnceAndOnlyOpensOnOpen) {
    CreateHiddenWindowOnce();
    const Widget hidden = zamHidden;
    ASSERT_NE(hidden, nullptr);
    CreateHiddenWindowOnce();
    EXPECT_EQ(zamHidden, hidden);
    XWindowAttributes attributes{};
    ASSERT_NE(XGetWindowAttributes(display, XtWindow(hidden), &attributes), 0);
    EXPECT_EQ(attributes.map_state, IsUnmapped);

    // Sent from a second connection, as another process would.
    Display* sender = XOpenDisplay(nullptr);
    ASSERT_NE(sender, nullptr);
    // Which data opens is checked on the dispatch.
    XEvent event = ClientMessageEvent(XtWindow(hidden), XInternAtom(sender, "ZAM_TEST_REQUEST", False), 8);
    std::strncpy(event.xclient.data.b, "open", sizeof event.xclient.data.b);
    ASSERT_NE(XSendEvent(sender, XtWindow(hidden), False, NoEventMask, &event), 0);
    XSync(sender, False);
    XCloseDisplay(sender);
    XSync(display, False);  // now the sent event is queued here
    while (XtAppPending(app_context) & XtIMXEvent) XtAppProcessEvent(app_context, XtIMXEvent);
    FiFoQueue<std::unique_ptr<UICommand>> queued;
    uiCommandQ.ReadMessages(queued);
    ASSERT_EQ(queued.Size(), 1u);
    EXPECT_EQ(queued.TakeFront()->type, UICommandType::OpenDialog);
}

TEST_F(XApp, OnlyTheWindowManagersDeleteMessageCloses) {
    const Atom protocols = XInternAtom(display, "WM_PROTOCOLS", False);
    const Atom deleteWindow = XInternAtom(display, "WM_DELETE_WINDOW", False);
    const Atom other = XInternAtom(display, "WM_TAKE_FOCUS", False);
    struct Case {
        int type;
        Atom messageType;
        int format;
        Atom first;
        bool closes;
    };
    const Case cases[] = {
        {ClientMessage, protocols, 32, deleteWindow, true}, {ClientMessage, protocols, 32, other, false},
        {ClientMessage, other, 32, deleteWindow, false},    {ClientMessage, protocols, 8, deleteWindow, false},
        {KeyPress, protocols, 32, deleteWindow, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(&c - cases);
        XEvent event = ClientMessageEvent(None, c.messageType, c.format, c.first);
        event.type = c.type;
        EXPECT_EQ(IsDeleteWindowMessage(display, event), c.closes);
    }

    // Each dialog announces the message: checked with the dialogs.
    const Widget shell = SizedShell();
    XEvent close = ClientMessageEvent(XtWindow(shell), protocols, 32, deleteWindow);
    SystemMenuClose(shell, &close, nullptr, nullptr);
    EXPECT_EQ(exitStatuses, std::vector<int>{0});
    EXPECT_EQ(app_context, nullptr);  // the exit path destroyed it
}

TEST_F(XApp, TheDefaultFontSetOfAServerWithFonts) {
    // The resource's own value is never taken, and the toolkit's fallback works here: left alone.
    XrmDatabase database = XtDatabase(display);
    XrmPutStringResource(&database, "XtDefaultFontSet", "-nosuch-font-*");
    ConfigValidDefaultFontSet();
    char* type = nullptr;
    XrmValue value{};
    ASSERT_TRUE(XrmGetResource(XtDatabase(display), "xtDefaultFontSet", "XtDefaultFontSet", &type, &value));
    EXPECT_STREQ(value.addr, "-nosuch-font-*");

    // The listed fonts give a buildable choice when the fallback is refused.
    class RefuseFallback : public XFontSetProbe {
    public:
        using XFontSetProbe::XFontSetProbe;
        std::optional<int> FontSetHeight(const std::string& baseNames) override {
            if (baseNames == kToolkitFallbackFontSet) return std::nullopt;
            return XFontSetProbe::FontSetHeight(baseNames);
        }
    } probe(display);
    const std::optional<std::string> chosen = ChooseDefaultFontSet(probe);
    ASSERT_TRUE(chosen);
    EXPECT_TRUE(OwnedFontSet(display, chosen->c_str()));
}

TEST_F(XApp, CentresAndScrollsWidgets) {
    // One monitor, the whole screen.
    const Widget shell = SizedShell();
    PlaceDialog(shell);
    Position x = 0;
    Position y = 0;
    Dimension border = 0;
    XtVaGetValues(shell, XtNx, &x, XtNy, &y, XtNborderWidth, &border, nullptr);
    EXPECT_EQ(x, (1024 - 200 - 2 * border) / 2);
    EXPECT_EQ(y, (768 - 100 - 2 * border) / 2);
    XtVaSetValues(shell, XtNwidth, 3000, XtNheight, 800, nullptr);  // larger than the screen: at its corner
    PlaceDialog(shell);
    XtVaGetValues(shell, XtNx, &x, XtNy, &y, nullptr);
    EXPECT_EQ(x, 0);
    EXPECT_EQ(y, 0);
    XtVaSetValues(shell, XtNwidth, 200, XtNheight, 100, nullptr);

    const Widget viewport = XtVaCreateManagedWidget("viewport", viewportWidgetClass, shell, XtNallowVert, True,
                                                    XtNforceBars, True, XtNheight, 40, nullptr);
    static const char* items[] = {"a", "b", "c", "d", "e", "f", "g", "h", nullptr};
    const Widget list = XtVaCreateManagedWidget("list", listWidgetClass, viewport, XtNlist, items,
                                                XtNdefaultColumns, 1, XtNforceColumns, True, nullptr);
    XtRealizeWidget(shell);
    const Widget vertical = XtNameToWidget(viewport, "vertical");
    ASSERT_NE(vertical, nullptr);
    static float jumpedTo = -1;
    XtAddCallback(vertical, XtNjumpProc,
                  [](Widget, XtPointer, XtPointer fraction) { jumpedTo = *static_cast<float*>(fraction); }, nullptr);
    ScrollSelectedItemIntoView(viewport, list);  // nothing selected yet
    EXPECT_EQ(jumpedTo, -1);
    XawListHighlight(list, 6);
    ScrollSelectedItemIntoView(viewport, list);
    EXPECT_FLOAT_EQ(jumpedTo, 6.0f / 8.0f);
}

// A display test that dies outright takes its Xvfb with it: here a copy of
// the test starts one and is killed; the server, handed to this process as
// an orphan, must end.
TEST(XvfbServer, EndsWithTheTestThatStartedIt) {
    const int outcome = RunInForkedChild(
        [] {
            if (prctl(PR_SET_CHILD_SUBREAPER, 1) != 0) return 2;
            ChildProcess test;
            test.Fork([] {
                XvfbServer server;
                if (!server.Start()) return 3;
                const std::string pid = std::to_string(server.Pid());
                const std::string frame = std::string{static_cast<char>(pid.size()), 0, 0, 0} + pid;
                if (write(1, frame.data(), frame.size()) != static_cast<ssize_t>(frame.size())) return 4;
                raise(SIGKILL);
                return 5;
            });
            const std::optional<std::string> reported = test.ReadFrame(std::chrono::seconds(20));
            if (!reported || test.WaitForExit(std::chrono::seconds(20)) != -SIGKILL) return 6;
            const pid_t server = static_cast<pid_t>(std::stol(*reported));
            for (int waited = 0; waited < 1000; ++waited) {  // 10 s at most
                if (waitpid(server, nullptr, WNOHANG) == server) return 0;
                usleep(10000);
            }
            kill(server, SIGKILL);  // left behind: end it here, and fail
            waitpid(server, nullptr, 0);
            return 1;
        },
        std::chrono::seconds(60));
    EXPECT_EQ(outcome, 0) << "1: the server outlived the test that started it";
}

}  // namespace
