// The action request dialog in this process, on the test program's own Xvfb:
// found by its widget names, clicked through XTest where a person would click.

#include <stdlib.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <memory>
#include <thread>
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
#include "protocol/Documents.h"
#include "protocol/UIReports.h"
#include "tests/support/ForkedCheck.h"
#include "tests/support/TestData.h"
#include "tests/support/Xvfb.h"
#include "text/FormatFile.h"
#include "ui/ActionRequestDialog.h"
#include "ui/ErrorHandlers.h"
#include "ui/KeyboardFocus.h"
#include "ui/XApplication.h"
#include "ui/XDialogCalls.h"
#include "ui/XGlobals.h"

#include <X11/Shell.h>
#include <X11/StringDefs.h>
#include <X11/Xaw/List.h>
#include "tests/support/ScrollByHand.h"

extern "C" const char* __lsan_default_suppressions() { return "leak:_XawImInitialize\nleak:_XawImRegister\n"; }
// Whole stacks through the toolkit's libraries, so the suppressions above find their frames.
extern "C" const char* __asan_default_options() { return "fast_unwind_on_malloc=0"; }

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
    static void SetUpTestSuite() {
        static XDialogCalls screen;  // the tick reaches the dialog as the program's does
        WireDialogCalls(&screen);
        Open("/nonexistent/%N");
    }
    static void TearDownTestSuite() { DestroyApplicationContext(); }
    void SetUp() override {
        endings.clear();
        SetExitFunctionForTesting([](int status, const char*) { endings.push_back(status); });
    }
    void TearDown() override {
        actions.clear();  // also clears the remembered selection
        ActionRequestDialog::Enable();
        ActionRequestDialog::Hide();
        SetExitFunctionForTesting(nullptr);
        Commands();
        EXPECT_EQ(endings, std::vector<int>{});
    }
    // Resources only from `userFile`: the toolkit reads the system path once
    // per process, the user's at every display; HOME holds nothing.
    static void Open(const char* userFile) {
        setenv("XFILESEARCHPATH", "/nonexistent/%N", 1);
        setenv("XUSERFILESEARCHPATH", userFile, 1);
        setenv("HOME", "/nonexistent", 1);
        unsetenv("XENVIRONMENT");
        XtToolkitInitialize();
        app_context = XtCreateApplicationContext();
        int argc = 1;
        char name[] = "ZAMClientUI", *argv[] = {name, nullptr};
        display = XtOpenDisplay(app_context, nullptr, nullptr, "XZAMClientUI", nullptr, 0, &argc, argv);
        ASSERT_NE(display, nullptr);
        KeyboardFocus::RegisterActions(app_context);
        XSetErrorHandler(X_ErrorHandler);
    }

    void Show(std::int64_t remindMinutes = 5) {
        ActionRequestDialog::Show(false, TimeInterval(remindMinutes * kMinute), true);
        Pump();
    }
    void Refresh() {
        ActionRequestDialog::Update();
        Pump();
    }
    void Pump() {  // pays an owed refresh and handles the X events, until an ending closes the display
        ActionRequestDialog::FlushRefresh();
        if (display != nullptr) XSync(display, False);
        while (app_context != nullptr && (XtAppPending(app_context) & XtIMXEvent)) {
            XtAppProcessEvent(app_context, XtIMXEvent);
        }
    }
    // The shell is found as a person's tool would: a top-level window holding "actiontitle".
    Widget W(const std::string& name) {
        Window root = 0, parent = 0, *children = nullptr;
        unsigned count = 0;
        XQueryTree(display, DefaultRootWindow(display), &root, &parent, &children, &count);
        Widget shell = nullptr;
        for (unsigned i = 0; i < count; ++i) {
            const Widget top = XtWindowToWidget(display, children[i]);
            if (top != nullptr && XtNameToWidget(top, "*actiontitle") != nullptr) shell = top;
        }
        XFree(children);
        return name.empty() ? shell : XtNameToWidget(shell, ("*" + name).c_str());
    }
    // Both lists have empty names: the List child of their viewport.
    Widget ListOf(const char* viewport) {
        WidgetList children = nullptr;
        Cardinal count = 0;
        XtVaGetValues(W(viewport), XtNchildren, &children, XtNnumChildren, &count, nullptr);
        return *std::find_if(children, children + count, [](Widget w) { return XtClass(w) == listWidgetClass; });
    }
    std::string Text(const std::string& name, const char* resource = XtNlabel) {
        String text = nullptr;
        XtVaGetValues(W(name), resource, &text, nullptr);
        return text;
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
    void Click(Widget widget, int x = 3, int y = 3) {
        ClickThroughServer(display, XtWindow(widget), x, y);
        Pump();
    }
    void ClickRow(const char* viewport, int row) {
        Dimension spacing = 0, internal = 0;
        XFontStruct* font = nullptr;
        XtVaGetValues(ListOf(viewport), XtNrowSpacing, &spacing, XtNinternalHeight, &internal, XtNfont, &font, nullptr);
        const int rowHeight = font->ascent + font->descent + spacing;
        Click(ListOf(viewport), 5, internal + row * rowHeight + rowHeight / 2);
    }
    // "type:id:minutes:seconds" of every queued command.
    static std::vector<std::string> Commands() {
        FiFoQueue<std::unique_ptr<UICommand>> queued;
        uiCommandQ.ReadMessages(queued);
        std::vector<std::string> lines;
        for (; !queued.IsEmpty(); queued.TakeFront()) {
            const UICommand& c = *queued.Front();
            lines.push_back(std::to_string(static_cast<int>(c.type)) + ":" + std::to_string(c.id) + ":" +
                            std::to_string(c.minutes) + ":" + std::to_string(c.seconds));
        }
        return lines;
    }
    // The title, each button's label and sensitivity (+/-), whether details
    // is mapped, the snooze list's first and chosen entry and its sensitivity.
    std::string State() {
        std::string state = Text("actiontitle");
        for (const char* name : {"takeAllActions", "takeActions", "cancelAction", "actionDetails", "snoozeButton"}) {
            state += "|" + Text(name) + (XtIsSensitive(W(name)) ? "+" : "-");
        }
        Boolean mapped = False;
        XtVaGetValues(W("actionDetails"), XtNmappedWhenManaged, &mapped, nullptr);
        return state + (mapped ? "|mapped|" : "|unmapped|") + Items("snoozeViewport")[0] + ">" +
               Current("snoozeViewport") + (XtIsSensitive(ListOf("snoozeViewport")) ? "+" : "-");
    }

    ScopedClockOverride clock_{kNow};
};

TEST_F(ActionDialog, RefreshRules) {
    struct Case {
        const char* name;
        std::vector<ActionRequest> pending;
        int click;  // row, or -1
        std::int64_t remindMinutes;
        std::string state;
    };
    const std::string none = "|Take All Actions+|Take Actions-|Cancel Actions-|Action Details-|Snooze";
    const std::string one = "|Take All Actions+|Take Action+|Cancel Action";
    const Case cases[] = {
        {"empty", {}, -1, 5,
         "There are no pending actions.|Take All Actions-|Take Action-|Cancel Action-|Action Details-|Close+|unmapped|>--"},
        {"none selected", {Action(1, "One"), Action(2, "Two")}, -1, 5,
         ("There are 2 pending actions." + none + "+|unmapped|in 1 minute>in 5 minutes+")},
        {"not cancellable", {Action(1, "One", 0, false)}, 0, 5,
         ("One" + one + "-|Action Details-|Snooze+|unmapped|in 1 minute>in 5 minutes+")},
        {"deadline under five minutes", {Action(1, "One", 4)}, -1, 5,  // an insensitive list shows no choice
         ("There is 1 pending action." + none + "-|unmapped|15 minutes before deadline>--")},
        {"preview elsewhere", {Action(1, "One"), Action(2, "Two", 0, true, "script")}, 0, 120,
         ("One" + one + "+|Action Details-|Snooze+|mapped|in 1 minute>in 2 hours+")},
        {"preview selected", {Action(1, "One"), Action(2, "Two", 0, true, "script")}, 1, 5,
         ("Two" + one + "+|Action Details+|Snooze+|mapped|in 1 minute>in 5 minutes+")},
        {"deadline entry remembered", {Action(1, "One", 60)}, -1, -15,
         "There is 1 pending action." + none + "+|unmapped|15 minutes before deadline>15 minutes before deadline+"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        ReplaceActions(c.pending);
        Show(c.remindMinutes);
        if (c.click >= 0) ClickRow("viewport", c.click);
        EXPECT_EQ(State(), c.state);
        actions.clear();
        Refresh();
        ActionRequestDialog::Hide();
    }
}

TEST_F(ActionDialog, RowsComeFromTheStoreClientTextsAreValuesCountdownsStopAtFive) {
    ReplaceActions({Action(9, "nine"), Action(3, "three"), Action(9, "nine again"), Action(5, "")});
    Show();
    EXPECT_EQ(Items("viewport"), (std::vector<std::string>{"three", "nine again"}));
    ReplaceActions({Action(4, "{x} {actionTitle} }{", 60)});
    Refresh();
    ClickRow("viewport", 0);
    EXPECT_EQ(Text("actiontitle"), "{x} {actionTitle} }{");
    EXPECT_EQ(Items("viewport")[0].find("{x} {actionTitle} }{  --  "), 0u);
    // The store moves a forced deadline two minutes away to five: the countdown stops there
    // (that snoozing is refused then: the model's tests and the consent flows).
    ReplaceActions({Action(1, "Forced", 2, true, nullptr, true)});
    Refresh();
    EXPECT_NE(Text("actiondesc", XtNstring).find("in 5 minutes, 0 seconds."), std::string::npos);
}

// The reminder of a tick lists the pending actions; a document arriving while
// the dialog is shown is listed once its batch ends, before any X event; a
// selection does not pass to an action that replaced the chosen one in a batch.
// (Thousands of rows: bench/ActionDialogScaleBench.)
TEST_F(ActionDialog, ATickListsThePendingActionsAndABatchEndsListingItsActions) {
    for (int i = 1; i <= 3; ++i) AppendAction(Action(i, ("Action " + std::to_string(i)).c_str()));
    initialized = true;
    RunClientUITick();
    std::vector<std::string> rows = Items("viewport");
    EXPECT_EQ(std::to_string(rows.size()) + ":" + rows.front() + "|" + rows.back(), "3:Action 1|Action 3");
    UIMessage message;
    message.text = AutoUString<UTF8>("<ClientToUI><ActionRequest><ID>10001</ID><Title>New</Title></ActionRequest>"
                                     "</ClientToUI>");
    readQ.WriteMessage(std::move(message));
    ProcessMessagesFromClient();
    rows = Items("viewport");
    EXPECT_EQ(std::to_string(rows.size()) + ":" + rows.back(), "4:New");
    initialized = false;
}

// The snooze choice and its command: the model's tests and the end-to-end snooze flows.
TEST_F(ActionDialog, TheChoiceSurvivesHiding) {
    ReplaceActions({Action(1, "One"), Action(2, "Two"), Action(3, "Three")});
    Show();
    ClickRow("viewport", 2);
    ActionRequestDialog::Hide();
    actions.erase(actions.begin());  // "Three" moves up a row: the highlight goes with it
    Show();
    EXPECT_EQ(Text("actiontitle") + "|" + Current("viewport").substr(0, 5), "Three|Three");
}

TEST_F(ActionDialog, ButtonsDisableTheDialogAndQueueOneCommandPerTick) {
    ReplaceActions({Action(7, "Seven")});
    Show();
    ClickRow("viewport", 0);
    Click(W("takeActions"));
    Click(W("takeActions"));
    EXPECT_EQ(Commands(), std::vector<std::string>{"4:7:0:0"});
    AppendAction(Action(8, "Eight"));  // arriving while disabled: listed once enabled
    Refresh();
    EXPECT_EQ(Items("viewport").size(), 1u);
    ActionRequestDialog::Enable();
    EXPECT_EQ(Items("viewport").size(), 2u);
    for (const char* button : {"takeAllActions", "cancelAction", "actionDetails"}) {
        ActionRequestDialog::Enable();
        Click(W(button));
    }
    EXPECT_EQ(Commands(), (std::vector<std::string>{"0:0:0:0", "3:7:0:0"}));  // no preview: no details
    ActionRequestDialog::Enable();
    actions.clear();
    Refresh();
    EXPECT_TRUE(ActionRequestDialog::IsShown());  // nothing pending does not hide it
    EXPECT_TRUE(AnnouncesDeleteWindowThenIsClosed(display, XtWindow(W(""))));
    Pump();
    EXPECT_TRUE(ActionRequestDialog::IsShown());  // nor does the window manager's close; "Close" does
    Click(W("snoozeButton"));
    EXPECT_FALSE(ActionRequestDialog::IsShown());
}

TEST_F(ActionDialog, EveryFixedTextGoesThroughTheTranslations) {
    const FormatFile file(MakeFileLocation(TestDataPath("translator.xlat")));
    const FormatOverrideScope scope(file.Overrides(), GlobalFormatOverrideContext());
    Show();
    EXPECT_EQ(Text("", XtNtitle) + Text("actiontitle") + Text("actionListLabel") + Text("takeAllActions") +
                  Text("actionDetails") + Text("snoozeLabel") + Text("snoozeButton"),
              "[ActionRequestTitle] Action Requests[T] There are no pending actions.[T] Title[T]   --  [T] Deadline"
              "[TakeAllActions] Take All Actions[ActionHistoryTitle] Action Details[SnoozeCaption] Click Snooze to "
              "be reminded again:[T] Close");
    ReplaceActions({Action(1, "One", 60), Action(2, "Two")});
    Refresh();
    EXPECT_EQ(Text("actiontitle") + Text("takeActions") + Text("cancelAction") + Text("snoozeButton"),
              "[T] There are 2 pending actions.[T] Take Actions[T] Cancel Actions[T] Snooze");
    EXPECT_EQ(Items("viewport")[0].find("One  --  [T] "), 0u);
    const std::vector<std::string> snooze = Items("snoozeViewport");
    ASSERT_EQ(snooze.size(), 19u);
    for (const std::string& entry : snooze) EXPECT_EQ(entry.find("[T] "), 0u) << entry;
    ClickRow("viewport", 1);
    EXPECT_EQ(Text("actiontitle") + Text("takeActions") + Text("cancelAction"),
              "[T] Two[T] Take Action[T] Cancel Action");
    actions.pop_back();
    Refresh();
    EXPECT_EQ(Text("actiontitle"), "[T] There is 1 pending action.");
}

// A client text the locale ("C" here) cannot show, met by any refresh: the
// first one of a show, one a batch or the tick owes, one enabling makes, one
// a selection makes. Each ends the program after the dialog's report, sent
// twice, and none throws, maps a half-filled window or leaves the dialog
// behind. An ending closes the display, so each case runs in a forked copy
// on a display of its own.
TEST_F(ActionDialog, AClientTextTheLocaleCannotShowEndsTheProgramWithAReport) {
    const char* accented = "Gr\xc3\xb6\xc3\x9f" "e \xc3\xa4ndern";
    ActionRequest describedAccented = Action(1, "One");
    describedAccented.shortDescription = accented;
    const struct {
        const char* name;
        std::vector<ActionRequest> before;  // shown first, then `change`
        std::function<void()> change;
    } cases[] = {
        {"first refresh", {}, [&] { ReplaceActions({Action(1, accented)}), Show(); }},
        {"owed refresh", {Action(1, "One")}, [&] { AppendAction(Action(2, accented)), Refresh(); }},
        {"enabling", {Action(1, "One")},
         [&] { ActionRequestDialog::Disable(), AppendAction(Action(2, accented)), ActionRequestDialog::Enable(); }},
        {"selection", {describedAccented}, [&] { ClickRow("viewport", 0); }},
    };
    const std::string report(
        ConvertToXML(ClientUIErrorMessage(ClientUIErrorMessage::DialogError, "ActionRequestDialog")).View());
    for (const auto& c : cases) {
        const int outcome = RunInForkedChild(
            [&] {
                Open("/nonexistent/%N");
                ReplaceActions(c.before);
                if (!c.before.empty()) Show();
                if (!endings.empty()) return 4;
                // The pipe's writer, as far as the reports need one: they wait until it took them.
                std::vector<std::string> sent;
                std::atomic<bool> ended{false};
                std::thread writer([&] {
                    for (FiFoQueue<UIMessage> queue; !ended; std::this_thread::sleep_for(std::chrono::milliseconds(1))) {
                        for (writeQ.ReadMessages(queue); !queue.IsEmpty();) sent.push_back(queue.TakeFront().text.Str());
                    }
                });
                // Whatever is mapped from now on, as a person's screen would show it.
                Display* const watcher = XOpenDisplay(nullptr);
                XSelectInput(watcher, DefaultRootWindow(watcher), SubstructureNotifyMask);
                XSync(watcher, False);
                c.change();
                ended = true;
                writer.join();
                XSync(watcher, False);
                bool mapped = false;
                for (XEvent event; XPending(watcher) > 0;) mapped |= (XNextEvent(watcher, &event), event.type == MapNotify);
                if (endings != std::vector<int>{0}) return 1;
                if (ActionRequestDialog::IsShown() || mapped) return 2;
                return sent == std::vector<std::string>{report, report} ? 0 : 3;
            },
            std::chrono::seconds(60));
        EXPECT_EQ(outcome, 0) << c.name << " (1: no ending with 0, 2: mapped or still shown, 3: not reported twice, "
                              << "4: ended too soon, other: thrown or crashed)";
    }
}

// The description scrolls by hand: the wheel, three lines a notch, and the
// first button on its scroll bar, which drags the thumb.
TEST_F(ActionDialog, TheDescriptionScrollsByHand) {
    std::string lines;
    for (int i = 0; i < 200; ++i) lines += "line " + std::to_string(i) + "\n";
    ReplaceActions({Action(1, "One")});
    actions[0].shortDescription = SharedUString<UTF8>(UStringRef<UTF8>(lines));
    Show();
    ClickRow("viewport", 0);
    const std::vector<int> top = ScrollByHand(W("actiondesc"), [this] { Pump(); });
    ASSERT_GE(top.size(), 4u);  // the keys then move the focused action list, not the text
    EXPECT_EQ(std::vector<int>(top.begin(), top.begin() + 3), (std::vector<int>{3, 6, 3}));
    EXPECT_GT(top[3], 150);
}

// The wheel scrolls both lists, a notch down and back up, and leaves the
// choice as it was.
TEST_F(ActionDialog, BothListsScrollByTheWheel) {
    static const std::vector<std::string> titles(20, "An action");
    std::vector<ActionRequest> many;
    for (std::size_t i = 0; i < titles.size(); ++i) many.push_back(Action(i + 1, titles[i].c_str()));
    ReplaceActions(many);
    Show(1);  // the first snooze entry chosen, at the top
    for (const char* viewport : {"viewport", "snoozeViewport"}) {
        const std::string chosen = Current(viewport);
        std::vector<int> tops;
        Position y = 0;
        for (const unsigned button : {5u, 4u}) {
            ClickThroughServer(display, XtWindow(ListOf(viewport)), 5, 5 - y, button);  // in the shown part
            Pump();
            XtVaGetValues(ListOf(viewport), XtNy, &y, nullptr);
            tops.push_back(y);
        }
        EXPECT_LT(tops[0], 0) << viewport;
        EXPECT_EQ(tops[1], 0) << viewport;
        EXPECT_EQ(Current(viewport), chosen) << viewport;
    }
}

// Last, on a second display of its own, left open until the program ends.
TEST_F(ActionDialog, TheAppDefaultsFileTakesEffect) {
    Open(ZAM_SOURCE_DIR "/data/app-defaults/%N");
    Show();
    Pixel background = 0;
    XtVaGetValues(W("form"), XtNbackground, &background, nullptr);
    EXPECT_EQ(background, 0xF4F4F2u);
}

}  // namespace
