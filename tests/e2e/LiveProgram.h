#pragma once

// The end-to-end harness: the real, optimised ZAMClientUI on a private Xvfb,
// driven through the sample client's own code over real pipes, and watched
// through the X server like a user would see it.
//
// Every wait is on a frame or an X event, under a generous ceiling; a test
// that nothing is sent watches a fixed window of three of the program's
// one-second ticks. No test asserts how long anything took.

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "client/Scenario.h"
#include "client/Session.h"
#include "tests/support/Sandbox.h"
#include "tests/support/Xvfb.h"

typedef struct _XDisplay Display;
typedef unsigned long Window;

// How long any single wait may take before the test fails.
constexpr std::chrono::seconds kCeiling{20};

// The action request dialog's windows, as the program made its widgets.
struct ActionDialogWindows {
    Window shell = 0;
    Window list = 0;  // the List inside "viewport"
    Window takeAll = 0, take = 0, cancel = 0, details = 0;
    Window snoozeList = 0;  // the List inside "snoozeViewport"
    Window snooze = 0;
};

class LiveProgram {
public:
    // Starts the Xvfb with one screen of `screen` (XvfbServer::Start); the
    // test fails if it cannot.
    explicit LiveProgram(const std::string& screen = kDefaultScreen);
    ~LiveProgram();

    // Starts the program, waits for ReadyForData and sends the scenario's
    // initialisation, with the base directory inside the sandbox. Like every
    // call below, a failure of the client's becomes an exception with its
    // message, which fails the test.
    void Start(const Scenario& scenario = Scenario());
    // From the next Start on, the program reads the checkout's app-defaults
    // file, as an installed one is read; without this call, none.
    void UseShippedAppDefaults() { appDefaults_ = ZAM_SOURCE_DIR "/data/app-defaults/%N"; }
    // Plays the scenario's steps.
    void Play(const Scenario& scenario);
    const ::Sandbox& Files() const { return sandbox_; }
    const std::string& DisplayName() const { return xvfb_.DisplayName(); }

    // Sends one document of the given typed commands ("action id=1 ...").
    void Send(const std::vector<std::string>& commands);
    // The next report of `kind` (and `id`), or nothing within the ceiling.
    std::optional<Report> WaitFor(const std::string& kind, std::optional<unsigned long long> id = std::nullopt);
    // Everything reported during the next three ticks.
    std::vector<Report> ThreeTicks();
    // The documents the program sends during the next three ticks, byte for
    // byte; what an earlier WaitFor read is not among them.
    std::vector<std::string> ThreeTicksOfDocuments();
    // Closes the pipe; the program's exit status.
    int CloseAndWait();

    // The X side, on a connection of the test's own.
    Display* X();
    // Top-level windows whose name is `title`, as they are now. Under a window
    // manager they lie inside its frames: a nameless child of the root is
    // looked into, two levels deep.
    std::vector<Window> TopLevelWindows(const std::string& title);
    // Waits (WaitUntil) until at least one such window exists.
    std::vector<Window> WaitForTopLevelWindows(const std::string& title);
    // False too for a window that is gone.
    bool IsMapped(Window window);
    // A real pointer click (button 1) at (x, y) inside `window`, through XTest.
    // A window that is not there (0 from a dialog that did not open, or one
    // that is gone) is not clicked: the test fails.
    void ClickAt(Window window, int x, int y);
    // A click in the middle of `window`, as ClickAt.
    void Click(Window window);
    // The windows of the widgets directly inside `window`, in the order the
    // program made the widgets: X lists children bottom to top and puts each
    // new window on top, and the toolkit makes a parent's windows from its
    // last child to its first.
    std::vector<Window> Children(Window window);
    // The window `window` lies in (a window manager's frame, a widget's
    // parent); 0 for a window that is gone.
    Window Parent(Window window);
    // Waits until one action request dialog is mapped; its windows, or all
    // zero (and a test failure) if none is within the ceiling.
    ActionDialogWindows WaitForActionDialog(const std::string& title = "Action Requests");
    // Start, then one document of `commands`, then WaitForActionDialog.
    ActionDialogWindows StartWithActions(const std::vector<std::string>& commands,
                                         const Scenario& scenario = Scenario(),
                                         const std::string& title = "Action Requests");
    // A row of text a list shows, in the list's coordinates: the middle line
    // of its band, how far drawing reaches in it, and whether its top line is
    // drawn through (the block of a highlighted row; text leaves gaps).
    struct ShownRow {
        int y = 0, left = 0, right = 0;
        bool highlighted = false;
    };
    // The rows a list shows now, read from the screen, so fonts and spacing
    // do not matter. Only what its viewport shows is seen, and nothing may
    // cover it.
    std::vector<ShownRow> ShownRows(Window list);
    // Clicks the drawn part of shown row `row` of `list` (the toolkit's list
    // takes no click beside its items) until the row shows highlighted; false
    // (and a test failure) if it never does within the ceiling.
    bool ClickRow(Window list, std::size_t row);
    // Looks again at every X event, at least every tenth of a second, until
    // `condition` holds; false if it still does not after the ceiling.
    bool WaitUntil(const std::function<bool()>& condition);
    // Waits until one window titled `title` is mapped; the widget windows in
    // its form, in the order the program made them (none, and a test
    // failure, if there is none within the ceiling), and its shell in `shell`.
    std::vector<Window> WaitForDialog(const std::string& title, Window* shell = nullptr);
    // Everything reported until the program ends on its own, then its exit
    // status (nothing if it still runs after `ceiling`).
    std::pair<std::vector<Report>, std::optional<int>> UntilItEnds(std::chrono::seconds ceiling = kCeiling);

private:
    XvfbServer xvfb_;
    ::Sandbox sandbox_;
    std::unique_ptr<Session> session_;
    Display* display_ = nullptr;
    std::string appDefaults_ = "/nonexistent/%N";
};
