// The action request dialog in this process, on the test program's own Xvfb:
// found by its widget names, clicked through XTest where a person would click.

#include <stdlib.h>

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "actions/PendingActions.h"
#include "app/ClientLink.h"
#include "app/Dispatch.h"
#include "app/Exit.h"
#include "app/Settings.h"
#include "app/Tick.h"
#include "base/time/Clock.h"
#include "tests/support/TestData.h"
#include "tests/support/XvfbEnvironment.h"
#include "text/FormatFile.h"
#include "ui/ActionRequestDialog.h"
#include "ui/DialogCalls.h"
#include "ui/ErrorHandlers.h"
#include "ui/XGlobals.h"

#include <X11/Shell.h>
#include <X11/StringDefs.h>
#include <X11/Xaw/List.h>
#include <X11/extensions/XTest.h>

extern "C" const char* __lsan_default_suppressions() { return "leak:_XawImInitialize\n"; }

namespace {

::testing::Environment* const xvfb = AddXvfbEnvironment();

const Instant kNow(1795348800LL * 1000000);  // pinned: the clock has whole seconds only
constexpr std::int64_t kMinute = 60000000;
std::vector<int> endings;

ActionRequest Action(unsigned long long id, const char* title, std::int64_t deadlineMinutes = 0, bool cancellable = true,
                     const char* preview = nullptr, bool forceRun = false) {
    ActionRequest action;
    action.id = id;
    action.title = title;
    action.shortDescription = "Short";
    action.cancellable = cancellable;
    action.forceRun = forceRun;
    if (deadlineMinutes != 0) action.deadline = TimeObject(kNow + TimeInterval(deadlineMinutes * kMinute), TimeZone(0));
    if (preview != nullptr) action.preview = SharedUString<UTF8>(preview);
    return action;
}

// One display for the whole program: the toolkit caches pixmaps by screen, and
// a display reopened at a freed one's address would meet stale ones.
class ActionDialog : public ::testing::Test {
protected:
    static void SetUpTestSuite() { Open(nullptr); }
    static void TearDownTestSuite() { DestroyApplicationContext(); }
    void SetUp() override {
        endings.clear();
        SetExitFunctionForTesting([](int status, const char*) { endings.push_back(status); });
        actions.clear();
        international = false;
    }
    void TearDown() override {
        actions.clear();  // clears the remembered selection
        ActionRequestDialog::Enable();
        ActionRequestDialog::Hide();
        SetExitFunctionForTesting(nullptr);
        Commands();
        EXPECT_EQ(endings, std::vector<int>{});
    }

    // Resources come only from `resourceFile` (none for nullptr): no installed
    // or user file counts. (The toolkit reads the system search path once per
    // process, the user's at every display.)
    static void Open(const char* resourceFile) {
        setenv("XFILESEARCHPATH", "/nonexistent/%N", 1);
        setenv("XUSERFILESEARCHPATH", resourceFile != nullptr ? resourceFile : "/nonexistent/%N", 1);
        setenv("HOME", "/nonexistent", 1);
        unsetenv("XENVIRONMENT");
        XtToolkitInitialize();
        app_context = XtCreateApplicationContext();
        int argc = 1;
        char name[] = "ZAMClientUI";
        char* argv[] = {name, nullptr};
        display = XtOpenDisplay(app_context, nullptr, nullptr, "XZAMClientUI", nullptr, 0, &argc, argv);
        ASSERT_NE(display, nullptr);
        XSetErrorHandler(X_ErrorHandler);
    }

    void Show(TimeInterval remind = TimeInterval(5 * kMinute), bool snoozable = true) {
        ActionRequestDialog::Show(false, remind, snoozable);
        Pump();
    }
    void Refresh() {
        ActionRequestDialog::Update();
        ActionRequestDialog::FlushRefresh();
        Pump();
    }
    void Pump() {
        XSync(display, False);
        while (XtAppPending(app_context) & XtIMXEvent) XtAppProcessEvent(app_context, XtIMXEvent);
    }

    // The shell is found as a person's tool would: a top-level window holding "actiontitle".
    Widget W(const char* path) {
        Window root = 0, parent = 0, *children = nullptr;
        unsigned count = 0;
        XQueryTree(display, DefaultRootWindow(display), &root, &parent, &children, &count);
        Widget found = nullptr;
        for (unsigned i = 0; i < count && found == nullptr; ++i) {
            const Widget shell = XtWindowToWidget(display, children[i]);
            if (shell != nullptr && XtNameToWidget(shell, "form.actiontitle") != nullptr) {
                found = *path != '\0' ? XtNameToWidget(shell, path) : shell;
            }
        }
        if (children != nullptr) XFree(children);
        return found;
    }
    // Both lists have empty names: the List child of their viewport.
    Widget ListOf(const char* viewport) {
        WidgetList children = nullptr;
        Cardinal count = 0;
        XtVaGetValues(W(viewport), XtNchildren, &children, XtNnumChildren, &count, nullptr);
        for (Cardinal i = 0; i < count; ++i) {
            if (XtClass(children[i]) == listWidgetClass) return children[i];
        }
        return nullptr;
    }
    std::string Text(const char* path, const char* resource = XtNlabel) {
        String text = nullptr;
        XtVaGetValues(W(path), resource, &text, nullptr);
        return text != nullptr ? text : "(null)";
    }
    std::vector<std::string> Items(const char* viewport) {
        String* items = nullptr;
        int count = 0;
        XtVaGetValues(ListOf(viewport), XtNlist, &items, XtNnumberStrings, &count, nullptr);
        return std::vector<std::string>(items, items + count);
    }
    std::string Current(const char* viewport) {
        XawListReturnStruct* current = XawListShowCurrent(ListOf(viewport));
        const std::string text = current->list_index >= 0 ? current->string : "-";
        XtFree(reinterpret_cast<char*>(current));
        return text;
    }

    void Click(Widget widget, int x, int y) {
        int rootX = 0, rootY = 0;
        Window child = 0;
        XTranslateCoordinates(display, XtWindow(widget), DefaultRootWindow(display), x, y, &rootX, &rootY, &child);
        XTestFakeMotionEvent(display, -1, rootX, rootY, 0);
        XTestFakeButtonEvent(display, 1, True, 0);
        XTestFakeButtonEvent(display, 1, False, 0);
        Pump();
    }
    void Click(const char* path) { Click(W(path), 3, 3); }
    void ClickRow(const char* viewport, int row) {
        const Widget list = ListOf(viewport);
        Dimension spacing = 0, internal = 0;
        XFontStruct* font = nullptr;
        XtVaGetValues(list, XtNrowSpacing, &spacing, XtNinternalHeight, &internal, XtNfont, &font, nullptr);
        const int rowHeight = font->ascent + font->descent + spacing;
        Click(list, 5, internal + row * rowHeight + rowHeight / 2);
    }

    // "type:id:minutes:seconds" of every queued command.
    static std::vector<std::string> Commands() {
        FiFoQueue<std::unique_ptr<UICommand>> queued;
        uiCommandQ.ReadMessages(queued);
        std::vector<std::string> lines;
        while (!queued.IsEmpty()) {
            const std::unique_ptr<UICommand> c = queued.TakeFront();
            lines.push_back(std::to_string(static_cast<int>(c->type)) + ":" + std::to_string(c->id) + ":" +
                            std::to_string(c->minutes) + ":" + std::to_string(c->seconds));
        }
        return lines;
    }

    // The dialog's state in one line: label/sensitive of the title, the
    // buttons, details' mapping, and the snooze list's first and chosen entry.
    std::string State() {
        std::string state = Text("form.actiontitle");
        for (const char* name : {"takeAllActions", "takeActions", "cancelAction", "actionDetails", "snoozeButton"}) {
            const Widget widget = W((std::string("form.") + name).c_str());
            state += "|" + Text((std::string("form.") + name).c_str()) + (XtIsSensitive(widget) ? "+" : "-");
        }
        Boolean mapped = False;
        XtVaGetValues(W("form.actionDetails"), XtNmappedWhenManaged, &mapped, nullptr);
        state += mapped ? "|mapped" : "|unmapped";
        const std::vector<std::string> snooze = Items("form.snoozeViewport");
        state += "|" + (snooze.empty() ? std::string() : snooze[0]) + ">" + Current("form.snoozeViewport");
        state += XtIsSensitive(ListOf("form.snoozeViewport")) ? "+" : "-";
        return state;
    }

    ScopedClockOverride clock_{kNow};
};

TEST_F(ActionDialog, RefreshRules) {
    struct Case {
        const char* name;
        std::vector<ActionRequest> pending;
        int click;  // row, or -1
        std::int64_t remindMinutes;
        const char* state;
    };
    const Case cases[] = {
        {"empty", {}, -1, 5,
         "There are no pending actions.|Take All Actions-|Take Action-|Cancel Action-|Action Details-|Close+|unmapped|>--"},
        {"two, none selected", {Action(1, "One"), Action(2, "Two")}, -1, 5,
         "There are 2 pending actions.|Take All Actions+|Take Actions-|Cancel Actions-|Action Details-|Snooze+|unmapped|"
         "in 1 minute>in 5 minutes+"},
        {"cancellable selected", {Action(1, "One"), Action(2, "Two")}, 1, 5,
         "Two|Take All Actions+|Take Action+|Cancel Action+|Action Details-|Snooze+|unmapped|in 1 minute>in 5 minutes+"},
        {"not cancellable selected", {Action(1, "One", 0, false)}, 0, 5,
         "One|Take All Actions+|Take Action+|Cancel Action-|Action Details-|Snooze+|unmapped|in 1 minute>in 5 minutes+"},
        {"deadline under five minutes", {Action(1, "One", 4)}, -1, 5,
         "There is 1 pending action.|Take All Actions+|Take Actions-|Cancel Actions-|Action Details-|Snooze-|unmapped|"
         "15 minutes before deadline>--"},  // an insensitive list shows no choice
        {"preview elsewhere", {Action(1, "One"), Action(2, "Two", 0, true, "script")}, 0, 120,
         "One|Take All Actions+|Take Action+|Cancel Action+|Action Details-|Snooze+|mapped|in 1 minute>in 2 hours+"},
        {"preview selected", {Action(1, "One"), Action(2, "Two", 0, true, "script")}, 1, 5,
         "Two|Take All Actions+|Take Action+|Cancel Action+|Action Details+|Snooze+|mapped|in 1 minute>in 5 minutes+"},
        {"deadline entry remembered", {Action(1, "One", 60)}, -1, -15,
         "There is 1 pending action.|Take All Actions+|Take Actions-|Cancel Actions-|Action Details-|Snooze+|unmapped|"
         "15 minutes before deadline>15 minutes before deadline+"},
        {"untitled not listed", {Action(1, ""), Action(2, "Two")}, -1, -15,
         "There is 1 pending action.|Take All Actions+|Take Actions-|Cancel Actions-|Action Details-|Snooze+|unmapped|"
         "in 1 minute>in 1 minute+"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        actions = c.pending;
        Show(TimeInterval(c.remindMinutes * kMinute));
        if (c.click >= 0) ClickRow("form.viewport", c.click);
        EXPECT_EQ(State(), c.state);
        actions.clear();
        Refresh();
        ActionRequestDialog::Hide();
    }
}

TEST_F(ActionDialog, RowsComeFromTheStoreInIdOrderOneRowPerId) {
    actions = {Action(9, "nine"), Action(3, "three"), Action(9, "nine again"), Action(5, "")};
    Show();
    EXPECT_EQ(Items("form.viewport"), (std::vector<std::string>{"three", "nine again"}));
    // Client texts are values, never formats.
    actions = {Action(4, "{x} {actionTitle} }{", 60)};
    Refresh();
    ClickRow("form.viewport", 0);
    EXPECT_EQ(Text("form.actiontitle"), "{x} {actionTitle} }{");
    EXPECT_EQ(Items("form.viewport")[0].find("{x} {actionTitle} }{  --  "), 0u);
}

TEST_F(ActionDialog, SelectionSurvivesHidingWhileEveryRefreshResetsTheSnoozeChoice) {
    actions = {Action(1, "One", 30), Action(2, "Two", 30), Action(3, "Three", 30)};
    Show();
    ClickRow("form.viewport", 2);
    ActionRequestDialog::Hide();
    Show();
    EXPECT_EQ(Text("form.actiontitle"), "Three");
    ClickRow("form.snoozeViewport", 4);  // "in 10 minutes", next to the default in view
    ClickRow("form.viewport", 1);        // back to the default entry
    EXPECT_EQ(Current("form.snoozeViewport"), "in 5 minutes");
    ClickRow("form.snoozeViewport", 4);
    Click("form.snoozeButton");
    EXPECT_FALSE(ActionRequestDialog::IsShown());
    // The earliest deadline is 30 minutes away: 1800 whole seconds.
    EXPECT_EQ(Commands(), std::vector<std::string>{"5:0:10:1800"});

    actions.resize(1);  // a rebuild below the remembered row clears it
    Show();
    EXPECT_EQ(Text("form.actiontitle"), "There is 1 pending action.");
}

TEST_F(ActionDialog, ButtonsDisableTheDialogAndQueueOneCommandPerTick) {
    actions = {Action(7, "Seven")};
    Show();
    ClickRow("form.viewport", 0);
    Click("form.takeActions");
    Click("form.takeActions");
    EXPECT_EQ(Commands(), std::vector<std::string>{"4:7:0:0"});
    EXPECT_FALSE(ActionRequestDialog::IsEnabled());
    // Arriving while disabled: listed once enabled.
    actions.push_back(Action(8, "Eight"));
    ActionRequestDialog::Update();
    ActionRequestDialog::FlushRefresh();
    EXPECT_EQ(Items("form.viewport").size(), 1u);
    ActionRequestDialog::Enable();
    EXPECT_EQ(Items("form.viewport").size(), 2u);
    for (const char* button : {"takeAllActions", "cancelAction", "actionDetails"}) {
        SCOPED_TRACE(button);
        ActionRequestDialog::Enable();
        Click((std::string("form.") + button).c_str());
        EXPECT_EQ(Commands().size(), std::string(button) == "actionDetails" ? 0u : 1u);  // no preview: not sensitive
    }
    // Nothing pending never hides the dialog by itself; "Close" does.
    ActionRequestDialog::Enable();
    actions.clear();
    Refresh();
    EXPECT_TRUE(ActionRequestDialog::IsShown());
    Click("form.snoozeButton");
    EXPECT_FALSE(ActionRequestDialog::IsShown());
}

TEST_F(ActionDialog, AForcedCountdownStopsAtFiveMinutesAndKeepsSnooze) {
    actions = {Action(1, "Forced", 2, true, nullptr, true)};
    Show();
    ClickRow("form.viewport", 0);
    EXPECT_NE(Text("form.actiondesc", XtNstring).find("in 5 minutes, 0 seconds."), std::string::npos);
    EXPECT_TRUE(XtIsSensitive(W("form.snoozeButton")));
}

TEST_F(ActionDialog, EveryFixedTextGoesThroughTheTranslations) {
    const FormatFile file(MakeFileLocation(TestDataPath("translator.xlat")));
    const FormatOverrideScope scope(file.Overrides(), GlobalFormatOverrideContext());
    Show();
    String title = nullptr;
    XtVaGetValues(W(""), XtNtitle, &title, nullptr);
    EXPECT_STREQ(title, "[ActionRequestTitle] Action Requests");
    EXPECT_EQ(Text("form.actiontitle") + Text("form.actionListLabel") + Text("form.takeAllActions") +
                  Text("form.actionDetails") + Text("form.snoozeLabel") + Text("form.snoozeButton"),
              "[T] There are no pending actions.[T] Title[T]   --  [T] Deadline[TakeAllActions] Take All Actions"
              "[ActionHistoryTitle] Action Details[SnoozeCaption] Click Snooze to be reminded again:[T] Close");
    actions = {Action(1, "One", 60), Action(2, "Two")};
    Refresh();
    EXPECT_EQ(Text("form.actiontitle") + Text("form.takeActions") + Text("form.cancelAction") +
                  Text("form.snoozeButton"),
              "[T] There are 2 pending actions.[T] Take Actions[T] Cancel Actions[T] Snooze");
    EXPECT_EQ(Items("form.viewport")[0].find("One  --  [T] "), 0u);
    const std::vector<std::string> snooze = Items("form.snoozeViewport");
    ASSERT_EQ(snooze.size(), 19u);
    for (const std::string& entry : snooze) EXPECT_EQ(entry.find("[T] "), 0u) << entry;
    ClickRow("form.viewport", 1);
    EXPECT_EQ(Text("form.actiontitle") + Text("form.takeActions") + Text("form.cancelAction"),
              "[T] Two[T] Take Action[T] Cancel Action");
    actions.pop_back();
    Refresh();
    EXPECT_EQ(Text("form.actiontitle"), "[T] There is 1 pending action.");
}

TEST_F(ActionDialog, TheWindowManagersCloseIsAnnouncedAndLeavesTheDialogOpen) {
    Show();
    const Atom deleteWindow = XInternAtom(display, "WM_DELETE_WINDOW", False);
    Atom* announced = nullptr;
    int count = 0;
    ASSERT_NE(XGetWMProtocols(display, XtWindow(W("")), &announced, &count), 0);
    EXPECT_EQ(std::vector<Atom>(announced, announced + count), std::vector<Atom>{deleteWindow});
    XFree(announced);
    XEvent close{};
    close.xclient = XClientMessageEvent{ClientMessage, 0, True, display, XtWindow(W("")),
                                        XInternAtom(display, "WM_PROTOCOLS", False), 32, {}};
    close.xclient.data.l[0] = static_cast<long>(deleteWindow);
    XSendEvent(display, XtWindow(W("")), False, NoEventMask, &close);
    Pump();
    EXPECT_TRUE(ActionRequestDialog::IsShown());
}

// Sizes are 16 bits: neither many rows nor a long title may wrap one.
TEST_F(ActionDialog, NoRowCountOrTitleLengthWrapsASize) {
    const std::string longTitle = std::string(50000, 'W') + "\t\n" + std::string(49998, 'x');
    for (int rows : {50000, 1}) {
        SCOPED_TRACE(rows);
        actions.clear();
        for (int i = 0; i < rows; ++i) actions.push_back(Action(i + 1, rows == 1 ? longTitle.c_str() : "row"));
        Show();
        Dimension width = 0, height = 0;
        XtVaGetValues(ListOf("form.viewport"), XtNwidth, &width, XtNheight, &height, nullptr);
        EXPECT_GT(width, 0);
        EXPECT_EQ(Items("form.viewport").size(), static_cast<std::size_t>(rows));
        if (rows > 1) {
            EXPECT_EQ(height, 32767);  // cut, never wrapped
        }
        ClickRow("form.viewport", 0);
        XtVaGetValues(W("form.actiontitle"), XtNwidth, &width, XtNheight, &height, nullptr);
        EXPECT_GT(width, 0);
        EXPECT_LT(height, 100);  // one line
        ActionRequestDialog::Hide();
    }
}

TEST_F(ActionDialog, OneTickListsTenThousandPendingActions) {
    for (int i = 0; i < 10000; ++i) actions.push_back(Action(i + 1, "row"));
    initialized = true;
    m_postponedTo = Instant(0);
    RunClientUITick();
    ActionRequestDialog::FlushRefresh();
    EXPECT_EQ(Items("form.viewport").size(), 10000u);
    initialized = false;
}

// On a second display of its own, kept open until the program ends.
TEST_F(ActionDialog, TheAppDefaultsFileTakesEffect) {
    const XtAppContext context = app_context;
    Display* const first = display;
    Open(ZAM_SOURCE_DIR "/data/app-defaults/%N");
    Show();
    Pixel background = 0;
    XtVaGetValues(W("form"), XtNbackground, &background, nullptr);
    EXPECT_EQ(background, 0xF4F4F2u);
    ActionRequestDialog::Hide();
    app_context = context;
    display = first;
}

}  // namespace
