// Every dialog driven by keys alone, without an app-defaults file and with the
// shipped one: the program sends the client exactly what it sends for the
// same conversation done with clicks. The real program, keys and clicks
// through XTest; with no window manager the keyboard follows the pointer.
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

constexpr char kConfirmation[] = "Confirmation Required";  // actiontitle, staticlabel, text, cancel 3, ok 4
constexpr char kDetails[] = "Action Script Preview";       // text, ok 1
constexpr char kNotice[] = "Not Currently Available";      // staticlabel, ok 1
constexpr unsigned long kFocusPixel = 0x2A62C9;            // the focused control's border

// One step: a document sent, then one dialog answered. The action dialog's
// controls are numbered in its focus order: 0 the action list, 1 Take All,
// 2 Take, 3 Cancel, 4 Details, 5 the snooze list, 6 Snooze.
struct Step {
    std::vector<std::string> send;
    const char* title;  // the dialog; none: the action dialog
    std::size_t focus;  // by keys: the control that must show the focus first
    std::vector<const char*> keys;
    std::size_t click;  // by clicks: the control clicked, or with `row` that row of list `click`
    int row = -1;
    std::size_t actions = 0;  // if any: the actions the list must show first
};

// Two messages, two quiet-period notices; the second action chosen with the
// arrows and taken; the details twice; a confirmation declined by Escape,
// then by a lone Return (the focus starts on Cancel), then accepted; a
// chosen snooze entry. The fixed numbers of Tabs check the order, the skips
// and both ways round; each focus first shown checks where it settles.
const Step kConversation[] = {
    {{"message id=1 title=Earlier text=one", "message id=2 title=Later text=two"}, "Later", 1, {"Return"}, 1},
    {{}, "Earlier", 1, {"Escape"}, 1},
    {{"action id=1 title=One preview=p confirm=Sure?", "action id=2 title=Two", "action id=3 title=Three",
      "quiet-start end=+1h"},
     kNotice, 1, {"Return"}, 1},
    {{"quiet-start end=+1h"}, kNotice, 1, {"Escape"}, 1},
    {{"quiet-end"}, nullptr, 0, {"Down", "Down"}, 0, 1},
    {{}, nullptr, 0, {"Tab", "Tab", "Return"}, 2},
    {{}, nullptr, 5, {"Tab", "Tab", "Home"}, 0, 0, 2},  // Take went insensitive: the focus moved on
    {{}, nullptr, 0, {"Tab", "Tab", "Tab", "Return"}, 4},
    {{}, kDetails, 1, {"Return"}, 1},
    {{}, nullptr, 4, {"space"}, 4},
    {{}, kDetails, 1, {"Escape"}, 1},
    {{}, nullptr, 4, {"+Tab", "Return"}, 2},
    {{}, kConfirmation, 3, {"Escape"}, 3},
    {{}, nullptr, 2, {"Return"}, 2},
    {{}, kConfirmation, 3, {"Return"}, 3},
    {{}, nullptr, 2, {"Return"}, 2},
    {{}, kConfirmation, 3, {"Tab", "Return"}, 4},
    {{}, nullptr, 5, {"Down"}, 5, 1, 1},
    {{}, nullptr, 5, {"Tab", "Return"}, 6},
};

// Whether `window`'s left border shows the focus mark, read from the screen.
bool Marked(LiveProgram& program, Window window) {
    Display* const display = program.X();
    XWindowAttributes place{};
    const Window parent = program.Parent(window);
    if (parent == 0 || XGetWindowAttributes(display, window, &place) == 0) return false;
    XImage* image = XGetImage(display, parent, place.x, place.y + place.height / 2, 1, 1, AllPlanes, ZPixmap);
    const bool marked = image != nullptr && XGetPixel(image, 0, 0) == kFocusPixel;
    if (image != nullptr) XDestroyImage(image);
    return marked;
}

// The pointer over the middle of `over`, then each key ("+" for Shift).
void Type(Display* x, Window over, const std::vector<const char*>& keys) {
    XWindowAttributes place{};
    XGetWindowAttributes(x, over, &place);
    int rootX = 0, rootY = 0;
    Window child = 0;
    XTranslateCoordinates(x, over, place.root, place.width / 2, place.height / 2, &rootX, &rootY, &child);
    XTestFakeMotionEvent(x, -1, rootX, rootY, CurrentTime);
    const KeyCode shift = XKeysymToKeycode(x, XK_Shift_L);
    for (const char* key : keys) {
        const KeyCode code = XKeysymToKeycode(x, XStringToKeysym(key + (key[0] == '+')));
        if (key[0] == '+') XTestFakeKeyEvent(x, shift, True, CurrentTime);
        XTestFakeKeyEvent(x, code, True, CurrentTime);
        XTestFakeKeyEvent(x, code, False, CurrentTime);
        if (key[0] == '+') XTestFakeKeyEvent(x, shift, False, CurrentTime);
    }
    XSync(x, False);
}

// The conversation by clicks or by keys; what the program sent, the time a
// snooze reminds at masked (the clock moves on).
std::vector<std::string> Converse(LiveProgram& program, bool keys) {
    Scenario scenario;
    scenario.remindInterval = std::chrono::minutes(10);
    program.Start(scenario);
    ActionDialogWindows w{};
    std::vector<Window> controls;  // of the action dialog, in its focus order
    for (const Step& step : kConversation) {
        SCOPED_TRACE(std::string(step.title != nullptr ? step.title : "action dialog") + ", " + step.keys.back());
        if (!step.send.empty()) program.Send(step.send);
        Window shell = 0;
        if (step.title != nullptr) {
            controls = program.WaitForDialog(step.title, &shell);
        } else if ((shell = w.shell) == 0) {
            shell = (w = program.WaitForActionDialog()).shell;
        }
        if (step.title == nullptr) {
            auto viewport = [&](Window list) { return program.Parent(program.Parent(list)); };
            controls = {viewport(w.list), w.takeAll, w.take, w.cancel, w.details, viewport(w.snoozeList), w.snooze};
        }
        if (controls.size() <= std::max(step.focus, step.click)) {
            ADD_FAILURE() << "the dialog is not there";
            return {};
        }
        // The dialog takes input once it marks a focus: by keys where the step
        // says; by clicks anywhere, as clicks leave the focus where it was.
        EXPECT_TRUE(program.WaitUntil([&] {
            if (step.actions > 0 && program.ShownRows(w.list).size() != step.actions) return false;
            for (std::size_t i = 0; i < controls.size(); ++i) {
                if ((!keys || i == step.focus) && Marked(program, controls[i])) return true;
            }
            return false;
        })) << "no focus shown on " << step.focus;
        if (keys) {
            Type(program.X(), shell, step.keys);
        } else if (step.row >= 0) {
            program.ClickRow(step.click == 0 ? w.list : w.snoozeList, static_cast<std::size_t>(step.row));
        } else {
            program.Click(controls[step.click]);
        }
        if (step.title != nullptr) {
            EXPECT_TRUE(program.WaitUntil([&] { return program.TopLevelWindows(step.title).empty(); }));
        }
    }
    std::vector<std::string> documents = program.ThreeTicksOfDocuments();
    for (std::string& document : documents) {
        document = std::regex_replace(document, std::regex("<TimeObject>[^<]*<"), "<TimeObject>(masked)<");
    }
    EXPECT_EQ(documents.size(), 4u);  // two actions taken, a remind time and interval
    EXPECT_EQ(program.CloseAndWait(), 0);
    return documents;
}

TEST(KeyboardFlows, EveryDialogByKeysSendsWhatClicksSend) {
    XInitThreads();  // three conversations at once, each on its own thread and display
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
