#include "tests/e2e/LiveProgram.h"

#include <poll.h>

#include <algorithm>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <thread>

#include <gtest/gtest.h>

// X headers last: they define None, True, False and friends as macros.
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include "tests/support/XServerInput.h"

namespace {

// Waits for the next X event on `display` until `until`; false on time-out.
bool WaitForXEvent(Display* display, std::chrono::steady_clock::time_point until) {
    while (XPending(display) == 0) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(until - std::chrono::steady_clock::now()).count();
        if (left <= 0) return false;
        pollfd connection{ConnectionNumber(display), POLLIN, 0};
        poll(&connection, 1, static_cast<int>(left));
    }
    return true;
}

// The program destroys a dialog's windows whenever it hides it: a look at one
// that has just gone fails, and must not end the test (Xlib's own handler
// exits the process).
int IgnoreXError(Display*, XErrorEvent*) { return 0; }

// The client's failures become test failures with their message.
template <class Call>
auto Checked(Call call) {
    try {
        return call();
    } catch (const ClientError& error) {
        throw std::runtime_error("zam-client: " + error.message);
    }
}

}  // namespace

LiveProgram::LiveProgram(const std::string& screen) {
    if (!xvfb_.Start(screen)) ADD_FAILURE() << xvfb_.Failure();
}

LiveProgram::~LiveProgram() {
    session_.reset();
    if (display_ != nullptr) XCloseDisplay(display_);
    xvfb_.Stop();
}

void LiveProgram::Start(const Scenario& scenario) {
    SessionOptions options;
    options.program = ZAM_CLIENTUI_BINARY;
    // An explicit environment: nothing of the test's own reaches the program.
    // An installed app-defaults file or a user's resources never change what a test sees.
    options.environment = {"DISPLAY=" + xvfb_.DisplayName(), "PATH=/usr/bin:/bin", "LANG=C",
                           "HOME=" + sandbox_.Root(), "XFILESEARCHPATH=" + appDefaults_,
                           "XUSERFILESEARCHPATH=/nonexistent/%N"};
    options.baseDirectory = sandbox_.Path("base");
    options.readyTimeout = kCeiling;
    options.exitTimeout = kCeiling;
    session_ = std::make_unique<Session>(options, std::cout);
    Checked([&] { session_->Start(scenario); });
}

void LiveProgram::Play(const Scenario& scenario) {
    Checked([&] { session_->Play(scenario); });
}

void LiveProgram::Send(const std::vector<std::string>& commands) {
    std::vector<Command> records;
    for (const std::string& command : commands) records.push_back(ParseCommand(command));
    Checked([&] { session_->SendRecords(records); });
}

std::optional<Report> LiveProgram::WaitFor(const std::string& kind, std::optional<unsigned long long> id) {
    return Checked([&] { return session_->WaitFor(kind, id, SteadyClock::now() + kCeiling); });
}

std::vector<Report> LiveProgram::ThreeTicks() {
    return Checked([&] { return session_->Collect(SteadyClock::now() + std::chrono::seconds(3)); });
}

std::vector<std::string> LiveProgram::ThreeTicksOfDocuments() {
    const auto until = SteadyClock::now() + std::chrono::seconds(3);
    std::vector<std::string> documents;
    std::string payload;
    while (session_->Process().Next(payload, until) == UIProcess::Event::Frame) documents.push_back(payload);
    return documents;
}

int LiveProgram::CloseAndWait() {
    return Checked([&] { return session_->Finish(); });
}

Display* LiveProgram::X() {
    if (display_ == nullptr) {
        XSetErrorHandler(IgnoreXError);
        display_ = XOpenDisplay(xvfb_.DisplayName().c_str());
        // Top-level windows made, mapped or gone announce themselves on the
        // root: each is a reason for WaitUntil to look again at once.
        if (display_ != nullptr) XSelectInput(display_, DefaultRootWindow(display_), SubstructureNotifyMask);
    }
    return display_;
}

std::vector<Window> LiveProgram::TopLevelWindows(const std::string& title) {
    std::vector<Window> found;
    std::vector<Window> windows = Children(DefaultRootWindow(X()));
    for (std::size_t i = 0, onRoot = windows.size(); i < windows.size(); ++i) {
        const Window window = windows[i];
        // A name is Latin-1 (STRING) or compound text, however the title came: read as UTF-8.
        XTextProperty name{};
        if (XGetWMName(X(), window, &name) == 0) {
            // A nameless child of the root is a window manager's frame, or none of ours.
            if (i < onRoot) for (const Window inside : Children(window)) windows.push_back(inside);
            continue;
        }
        char** names = nullptr;
        int named = 0;
        if (Xutf8TextPropertyToTextList(X(), &name, &names, &named) >= Success && named > 0 && title == names[0]) {
            found.push_back(window);
        }
        if (names != nullptr) XFreeStringList(names);
        XFree(name.value);
    }
    return found;
}

std::vector<Window> LiveProgram::WaitForTopLevelWindows(const std::string& title) {
    std::vector<Window> found;
    WaitUntil([&] { return !(found = TopLevelWindows(title)).empty(); });
    return found;
}

bool LiveProgram::IsMapped(Window window) {
    XWindowAttributes attributes{};
    return XGetWindowAttributes(X(), window, &attributes) != 0 && attributes.map_state != IsUnmapped;
}

namespace {

// A window that is not there (a dialog that did not open gives 0) fails the
// test instead of being clicked: the click would land on whatever lies at
// the screen's corner.
bool Clickable(Display* display, Window window, XWindowAttributes& attributes) {
    if (display != nullptr && window != 0 && XGetWindowAttributes(display, window, &attributes) != 0) return true;
    ADD_FAILURE() << "a click on window " << window << ", which is not there (a dialog that did not open?)";
    return false;
}

}  // namespace

void LiveProgram::ClickAt(Window window, int x, int y) {
    XWindowAttributes attributes{};
    if (Clickable(X(), window, attributes)) ClickThroughServer(X(), window, x, y);
}

void LiveProgram::Click(Window window) {
    XWindowAttributes attributes{};
    if (Clickable(X(), window, attributes)) ClickThroughServer(X(), window, attributes.width / 2, attributes.height / 2);
}

std::vector<Window> LiveProgram::Children(Window window) {
    Window root = 0, parent = 0;
    Window* children = nullptr;
    unsigned int count = 0;
    std::vector<Window> found;
    if (XQueryTree(X(), window, &root, &parent, &children, &count) == 0) return found;
    found.assign(std::reverse_iterator<Window*>(children + count), std::reverse_iterator<Window*>(children));
    if (children != nullptr) XFree(children);
    return found;
}

Window LiveProgram::Parent(Window window) {
    Window root = 0, parent = 0, *children = nullptr;
    unsigned int count = 0;
    if (XQueryTree(X(), window, &root, &parent, &children, &count) == 0) return 0;
    if (children != nullptr) XFree(children);
    return parent;
}

bool LiveProgram::WaitUntil(const std::function<bool()>& condition) {
    const auto until = std::chrono::steady_clock::now() + kCeiling;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= until) return false;
        // Any event (a window made, mapped or gone) is a reason to look again.
        if (WaitForXEvent(X(), std::min(until, std::chrono::steady_clock::now() + std::chrono::milliseconds(100)))) {
            XEvent event;
            XNextEvent(X(), &event);
        }
    }
    return true;
}

ActionDialogWindows LiveProgram::StartWithActions(const std::vector<std::string>& commands,
                                                 const Scenario& scenario, const std::string& title) {
    Start(scenario);
    Send(commands);
    return WaitForActionDialog(title);
}

ActionDialogWindows LiveProgram::WaitForActionDialog(const std::string& title) {
    // form: actiontitle, actiondesc, actionListLabel, viewport, takeAllActions,
    // takeActions, cancelAction, actionDetails, snoozeLabel, snoozeViewport,
    // snoozeButton; a viewport > its clip > the list.
    Window shell = 0;
    const std::vector<Window> widgets = WaitForDialog(title, &shell);
    if (widgets.size() != 11) {
        ADD_FAILURE() << "the action request dialog has " << widgets.size() << " widget windows, not 11";
        return {};
    }
    // Of a viewport's two windows, its clip is the one with the list inside.
    const auto listIn = [&](Window viewport) {
        for (Window part : Children(viewport)) {
            if (const std::vector<Window> inside = Children(part); inside.size() == 1) return inside[0];
        }
        return Window(0);
    };
    return {shell, listIn(widgets[3]), widgets[4], widgets[5], widgets[6], widgets[7], listIn(widgets[9]), widgets[10]};
}

std::vector<LiveProgram::ShownRow> LiveProgram::ShownRows(Window list) {
    // The viewport's clip window is always wholly on screen, unlike a long list.
    Window root = 0, clip = 0;
    Window* children = nullptr;
    unsigned int count = 0;
    std::vector<ShownRow> rows;
    if (XQueryTree(X(), list, &root, &clip, &children, &count) == 0) return rows;
    if (children != nullptr) XFree(children);
    XWindowAttributes clipSize{}, listPlace{};
    XGetWindowAttributes(X(), clip, &clipSize);
    XGetWindowAttributes(X(), list, &listPlace);
    XImage* image = XGetImage(X(), clip, 0, 0, clipSize.width, clipSize.height, AllPlanes, ZPixmap);
    if (image == nullptr) return rows;
    // The list's margin is background; a row is a band of lines with anything
    // else on them (text, or a highlighted row's block).
    const unsigned long background = XGetPixel(image, 0, 0);
    for (int y = 0, start = -1, topDrawn = 0; y <= clipSize.height; ++y) {
        int left = clipSize.width, right = -1, drawn = 0;
        for (int x = 0; y < clipSize.height && x < clipSize.width; ++x) {
            if (XGetPixel(image, x, y) != background) left = std::min(left, x), right = x, ++drawn;
        }
        if (right >= 0) {
            if (start < 0) start = y, topDrawn = drawn, rows.push_back({0, left, right, false});
            rows.back().left = std::min(rows.back().left, left), rows.back().right = std::max(rows.back().right, right);
            continue;
        }
        if (start < 0) continue;
        ShownRow& row = rows.back();
        // Text leaves gaps on its top line, a highlighted row's block does not.
        row.highlighted = 10 * topDrawn >= 9 * (row.right - row.left + 1);
        row.y = (start + y - 1) / 2 - listPlace.y;
        row.left -= listPlace.x, row.right -= listPlace.x;
        start = -1;
    }
    XDestroyImage(image);
    return rows;
}

bool LiveProgram::ClickRow(Window list, std::size_t row) {
    // Clicked again until it shows highlighted: the list may still be drawing,
    // or the dialog disabled for a moment (it then ignores clicks).
    const bool highlighted = WaitUntil([&] {
        const std::vector<ShownRow> rows = ShownRows(list);
        if (row >= rows.size()) return false;
        if (!rows[row].highlighted) ClickAt(list, (rows[row].left + rows[row].right) / 2, rows[row].y);
        return rows[row].highlighted;
    });
    EXPECT_TRUE(highlighted) << "row " << row << " never showed highlighted";
    // Then the rest of what the click changed has had time to follow: another
    // click now must not meet a button where it was before.
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    return highlighted;
}

std::vector<Window> LiveProgram::WaitForDialog(const std::string& title, Window* shell) {
    const std::vector<Window> shells = WaitForTopLevelWindows(title);
    if (shells.size() != 1 || !WaitUntil([&] { return IsMapped(shells[0]); })) {
        ADD_FAILURE() << shells.size() << " windows titled \"" << title << "\", or none mapped";
        return {};
    }
    if (shell != nullptr) *shell = shells[0];
    const std::vector<Window> form = Children(shells[0]);
    return form.size() == 1 ? Children(form[0]) : std::vector<Window>();
}

std::pair<std::vector<Report>, std::optional<int>> LiveProgram::UntilItEnds(std::chrono::seconds ceiling) {
    const auto until = SteadyClock::now() + ceiling;
    std::vector<Report> reports;
    std::string payload;
    while (session_->Process().Next(payload, until) == UIProcess::Event::Frame) {
        for (Report& report : ReadReports(payload)) reports.push_back(std::move(report));
    }
    return {reports, session_->Process().WaitForExit(until)};
}
