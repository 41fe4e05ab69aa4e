// Every dialog driven by keys alone, without an app-defaults file and with the
// shipped one: the program sends the client exactly what it sends for the
// same flows done with clicks. The real program, keys and clicks through XTest.
#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <thread>
#include <vector>

#include "tests/e2e/LiveProgram.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>

namespace {

constexpr char kConfirmation[] = "Confirmation Required";
constexpr char kDetails[] = "Action Script Preview";
constexpr char kNotice[] = "Not Currently Available";
// The border the program marks the focused control with.
constexpr unsigned long kFocusPixel = 0x2A62C9;

Window ParentOf(Display* display, Window window) {
    Window root = 0, parent = 0, *children = nullptr;
    unsigned count = 0;
    if (XQueryTree(display, window, &root, &parent, &children, &count) == 0) return 0;
    if (children != nullptr) XFree(children);
    return parent;
}

// Whether `window`'s left border shows the focus mark, read from the screen.
bool Marked(Display* display, Window window) {
    XWindowAttributes place{};
    const Window parent = ParentOf(display, window);
    if (parent == 0 || XGetWindowAttributes(display, window, &place) == 0 || place.border_width == 0) return false;
    XImage* image = XGetImage(display, parent, place.x, place.y + place.height / 2, 1, 1, AllPlanes, ZPixmap);
    if (image == nullptr) return false;
    const bool marked = XGetPixel(image, 0, 0) == kFocusPixel;
    XDestroyImage(image);
    return marked;
}

// The action dialog's controls in its focus order, as the mark shows them (a
// list's viewport holds the list's clip).
std::vector<Window> FocusOrder(LiveProgram& program, const ActionDialogWindows& w) {
    auto viewport = [&](Window list) { return ParentOf(program.X(), ParentOf(program.X(), list)); };
    return {viewport(w.list), w.takeAll, w.take, w.cancel, w.details, viewport(w.snoozeList), w.snooze};
}

class Driver {
public:
    Driver(LiveProgram& program, bool keys) : program_(program), keys_(keys) {}

    // The pointer over the middle of `over` (with no window manager the
    // keyboard follows it), then each key, pressed and released.
    void Type(Window over, std::vector<const char*> keys) {
        Display* x = program_.X();
        XWindowAttributes place{};
        ASSERT_NE(XGetWindowAttributes(x, over, &place), 0);
        int rootX = 0, rootY = 0;
        Window child = 0;
        XTranslateCoordinates(x, over, place.root, place.width / 2, place.height / 2, &rootX, &rootY, &child);
        XTestFakeMotionEvent(x, -1, rootX, rootY, CurrentTime);
        for (const char* key : keys) {
            const bool shifted = key[0] == '+';
            const KeyCode shift = XKeysymToKeycode(x, XK_Shift_L);
            const KeyCode code = XKeysymToKeycode(x, XStringToKeysym(key + (shifted ? 1 : 0)));
            if (shifted) XTestFakeKeyEvent(x, shift, True, CurrentTime);
            XTestFakeKeyEvent(x, code, True, CurrentTime);
            XTestFakeKeyEvent(x, code, False, CurrentTime);
            if (shifted) XTestFakeKeyEvent(x, shift, False, CurrentTime);
        }
        XSync(x, False);
    }

    // Waits until some control of `order` carries the mark: the dialog takes
    // input (a disabled one marks none).
    void WaitForAnyMark(const std::vector<Window>& order) {
        EXPECT_TRUE(program_.WaitUntil([&] {
            for (Window control : order) {
                if (Marked(program_.X(), control)) return true;
            }
            return false;
        })) << "the dialog never took input again";
    }

    // Tab (Shift+Tab `backwards`) until control `index` has the focus.
    void TabTo(Window shell, const std::vector<Window>& order, std::size_t index, bool backwards) {
        WaitForAnyMark(order);
        for (std::size_t presses = 0; presses < order.size() && !Marked(program_.X(), order[index]); ++presses) {
            std::vector<bool> before;
            for (Window control : order) before.push_back(Marked(program_.X(), control));
            Type(shell, {backwards ? "+Tab" : "Tab"});
            program_.WaitUntil([&] {
                for (std::size_t i = 0; i < order.size(); ++i) {
                    if (Marked(program_.X(), order[i]) != before[i]) return true;
                }
                return false;
            });
        }
        EXPECT_TRUE(Marked(program_.X(), order[index])) << "control " << index << " never took the focus";
    }

    // With keys, each of `keys` in turn, and the control of `order` it should
    // move the focus to: Tab and Shift+Tab go each their own way round.
    void ExpectSteps(Window shell, const std::vector<Window>& order,
                     const std::vector<std::pair<const char*, std::size_t>>& steps) {
        if (!keys_) return;
        WaitForAnyMark(order);
        for (const auto& [key, index] : steps) {
            Type(shell, {key});
            EXPECT_TRUE(program_.WaitUntil([&] { return Marked(program_.X(), order[index]); }))
                << key << " did not move the focus to control " << index;
        }
    }

    // Selects shown row `row` of the list that is control `index`: a click,
    // or the focus moved there and `keys`.
    void Row(Window shell, const std::vector<Window>& order, std::size_t index, Window list,
             std::vector<const char*> keys, std::size_t row) {
        if (!keys_) {
            program_.ClickRow(list, row);
            return;
        }
        TabTo(shell, order, index, index > order.size() / 2);
        Type(shell, keys);
        EXPECT_TRUE(program_.WaitUntil([&] {
            const std::vector<LiveProgram::ShownRow> rows = program_.ShownRows(list);
            return row < rows.size() && rows[row].highlighted;
        })) << "row " << row << " never showed highlighted";
    }

    // Presses control `index`: a click once the dialog takes input, or the
    // focus moved there and `key`.
    void Press(Window shell, const std::vector<Window>& order, std::size_t index, const char* key = "Return") {
        if (keys_) {
            TabTo(shell, order, index, false);
            Type(shell, {key});
        } else {
            WaitForAnyMark(order);
            program_.Click(order[index]);
        }
    }

    // Answers the dialog titled `title` with its widget `answer` (a click)
    // or `keys`, and waits until it has gone.
    void Answer(const char* title, std::size_t answer, std::vector<const char*> keys) {
        Window dialog = 0;
        const std::vector<Window> widgets = program_.WaitForDialog(title, &dialog);
        ASSERT_GT(widgets.size(), answer) << title;
        if (keys_) {
            // The first focus: the confirmation's Cancel, the others' only button.
            const std::size_t first = widgets.size() == 5 ? 3 : 1;
            EXPECT_TRUE(program_.WaitUntil([&] { return Marked(program_.X(), widgets[first]); })) << title;
            Type(dialog, keys);
        } else {
            program_.Click(widgets[answer]);
        }
        EXPECT_TRUE(program_.WaitUntil([&] { return program_.TopLevelWindows(title).empty(); })) << title;
    }

private:
    LiveProgram& program_;
    bool keys_;
};

// The conversation, by clicks or by keys; what the program sent meanwhile,
// the time a snooze reminds at masked (the clock has moved on).
std::vector<std::string> Converse(LiveProgram& program, bool keys) {
    Driver drive(program, keys);
    Scenario scenario;
    scenario.remindInterval = std::chrono::minutes(10);
    program.Start(scenario);
    // The later message lies over the earlier.
    program.Send({"message id=1 title=\"Earlier\" text=\"one\"", "message id=2 title=\"Later\" text=\"two\""});
    drive.Answer("Later", 1, {"Return"});
    drive.Answer("Earlier", 1, {"Escape"});
    program.Send({"action id=1 title=One preview=\"echo one\" confirm=\"Sure?\"", "action id=2 title=Two",
                  "action id=3 title=Three"});
    const ActionDialogWindows w = program.WaitForActionDialog();
    const std::vector<Window> order = FocusOrder(program, w);
    // From the list, where the focus starts: nothing is chosen, so Take All
    // is the only button before the snooze list that takes input.
    drive.ExpectSteps(w.shell, order, {{"Tab", 1}, {"+Tab", 0}, {"+Tab", 6}, {"+Tab", 5}, {"Tab", 6}, {"Tab", 0}});
    for (const char* key : {"Return", "Escape"}) {
        program.Send({"quiet-start end=+1h"});
        drive.Answer(kNotice, 1, {key});
        program.Send({"quiet-end"});
    }
    drive.Row(w.shell, order, 0, w.list, {"Down", "Down"}, 1);
    drive.Press(w.shell, order, 2);  // takes Two
    EXPECT_TRUE(program.WaitUntil([&] { return program.ShownRows(w.list).size() == 2; }));
    drive.Row(w.shell, order, 0, w.list, {"Home"}, 0);
    for (const auto& [press, key] : {std::pair{"Return", "Return"}, {"space", "Escape"}}) {
        drive.Press(w.shell, order, 4, press);
        drive.Answer(kDetails, 1, {key});
    }
    // Declined by Escape, then by a lone Return (the focus starts on Cancel),
    // then accepted by Tab to OK and Return.
    for (const auto& [answer, keys] : {std::pair<std::size_t, std::vector<const char*>>{3, {"Escape"}},
                                       {3, {"Return"}},
                                       {4, {"Tab", "Return"}}}) {
        drive.Press(w.shell, order, 2);
        drive.Answer(kConfirmation, answer, keys);
    }
    drive.Row(w.shell, order, 5, w.snoozeList, {"Down"}, 1);
    drive.Press(w.shell, order, 6);
    EXPECT_TRUE(program.WaitUntil([&] { return !program.IsMapped(w.shell); })) << "the snooze left it shown";
    std::vector<std::string> documents = program.ThreeTicksOfDocuments();
    for (std::string& document : documents) {
        document = std::regex_replace(document, std::regex("<TimeObject>[^<]*<"), "<TimeObject>(masked)<");
    }
    EXPECT_EQ(program.CloseAndWait(), 0);
    return documents;
}

TEST(KeyboardFlows, EveryDialogByKeysSendsWhatClicksSend) {
    XInitThreads();  // three conversations, each on its own thread and display
    // At once: each mostly waits for the program's ticks.
    LiveProgram clicks, bare, shipped;
    shipped.UseShippedAppDefaults();
    std::vector<std::string> byClicks, byKeys, byKeysShipped;
    std::thread first([&] { byClicks = Converse(clicks, false); });
    std::thread second([&] { byKeys = Converse(bare, true); });
    byKeysShipped = Converse(shipped, true);
    first.join();
    second.join();
    EXPECT_EQ(byKeys, byClicks);
    EXPECT_EQ(byKeysShipped, byClicks);
}

}  // namespace
