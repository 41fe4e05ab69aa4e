// The details, confirmation, message and quiet-mode dialogs in this process, on the test
// program's own Xvfb: widgets, texts (English and under the translator's file), layout, and
// the commands real pointer clicks queue. Their endings are tested on the real program
// (tests/e2e/DialogFlowsTest.cpp).

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "actions/PendingActions.h"
#include "app/ClientLink.h"
#include "app/Settings.h"
#include "base/files/FileLocation.h"
#include "base/time/Clock.h"
#include "protocol/ClientRequests.h"
#include "tests/support/TestData.h"
#include "tests/support/Xvfb.h"
#include "text/FormatFile.h"
#include "text/LocalizedStrings.h"
#include "ui/ActionDetailsDialog.h"
#include "ui/ConfirmationDialog.h"
#include "ui/KeyboardFocus.h"
#include "ui/MessageDialog.h"
#include "ui/QuietModeDialog.h"
#include "ui/XApplication.h"
#include "ui/XDialogCalls.h"
#include "ui/XGlobals.h"

#include <X11/Shell.h>
#include <X11/StringDefs.h>
#include <X11/Xaw/AsciiText.h>
#include "tests/support/ScrollByHand.h"

// The Athena vendor shell's input-method record is the library's, not ours.
extern "C" const char* __lsan_default_suppressions() { return "leak:_XawImInitialize\nleak:_XawImRegister\n"; }
extern "C" const char* __asan_default_options() { return "fast_unwind_on_malloc=0"; }

namespace {

::testing::Environment* const xvfb = AddXvfbEnvironment();
using T = UICommandType;

// The entry the action dialog lists for this ID; 0 (no entry) when none is pending.
EntryNumber Entry(unsigned long long id) {
    const std::size_t position = FindShownEntry(id);
    return position < actions.size() ? actions[position].entry : 0;
}
using Commands = std::vector<std::pair<T, unsigned long long>>;
using Ids = std::vector<unsigned long long>;
const Instant kNow(1795348800LL * kMicrosecondsPerSecond);
TimeInterval Seconds(std::int64_t seconds) { return TimeInterval(seconds * kMicrosecondsPerSecond); }
SharedUString<UTF8> U(const std::string& text) { return SharedUString<UTF8>(UStringRef<UTF8>(text)); }

bool actionDialogShown = true;
class Screen : public XDialogCalls {  // as main wires it, with an action dialog that is only a flag
    bool IsActionRequestDialogShown() override { return actionDialogShown; }
};

NullOr<SharedUString<UTF8>> Optional(const char* text) { return text ? U(text) : NullOr<SharedUString<UTF8>>(); }
ActionRequest Action(unsigned long long id, const std::string& title, const char* preview, const char* confirm) {
    return ActionRequest(id, {}, U(title), {}, 0, 0, 0, Optional(preview), 0, 0, Optional(confirm), 0);
}
MessageRequest Message(unsigned long long id, const std::string& title, const std::string& text,
                       const NullOr<TimeInterval>& timeout = {}, bool completion = false) {
    return MessageRequest{U(title), U(text), completion, timeout, id};
}

void OpenDisplay() {
    static Screen screen;
    WireDialogCalls(&screen);
    XtToolkitInitialize();
    app_context = XtCreateApplicationContext();
    int argc = 1;
    char name[] = "DialogsTest";
    char* argv[] = {name, nullptr};
    display = XtOpenDisplay(app_context, nullptr, nullptr, "XZAMClientUI", nullptr, 0, &argc, argv);
    KeyboardFocus::RegisterActions(app_context);
}

Widget Child(Widget shell, const char* name) { return XtNameToWidget(shell, (std::string("form.") + name).c_str()); }

std::string Text(Widget widget, const char* resource) {
    String value = nullptr;
    XtVaGetValues(widget, resource, &value, nullptr);
    return value != nullptr ? value : "";
}

// One display for the whole suite: the toolkit's helpers cache server resources per
// screen, which a display reopened at the same address would find stale.
class Dialogs : public ::testing::Test {
protected:
    static void SetUpTestSuite() { OpenDisplay(); }
    static void TearDownTestSuite() { DestroyApplicationContext(); }
    void SetUp() override {
        ASSERT_NE(display, nullptr);
        actions.clear();
        actionDialogShown = initialized = true;
        Queued(), Sent();
    }
    void TearDown() override {
        ActionDetailsDialog::Hide(), ConfirmationDialog::Hide(), QuietModeDialog::Remove();
        for (unsigned long long id = 0; id <= 5; ++id) MessageDialog::Remove(id);
        Pump();
    }
    static void Pump() {
        XSync(display, False);
        while (XtAppPending(app_context) & XtIMXEvent) XtAppProcessEvent(app_context, XtIMXEvent);
    }
    static Commands Queued() {
        FiFoQueue<std::unique_ptr<UICommand>> queue;
        Commands commands;
        for (uiCommandQ.ReadMessages(queue); !queue.IsEmpty(); queue.TakeFront()) {
            commands.emplace_back(queue.Front()->type, queue.Front()->id);
        }
        return commands;
    }
    static std::vector<std::string> Sent() {
        FiFoQueue<UIMessage> queue;
        std::vector<std::string> texts;
        for (writeQ.ReadMessages(queue); !queue.IsEmpty();) texts.push_back(queue.TakeFront().text.Str());
        return texts;
    }
    // Presses and releases the first button over the widget, through the server.
    static Commands Click(Widget shell, const char* name) {
        Pump();
        ClickThroughServer(display, XtWindow(Child(shell, name)), 3, 3);
        Pump();
        return Queued();
    }
    // Left, top, right and bottom, borders included.
    static std::array<int, 4> Box(Widget widget) {
        Position x = 0, y = 0;
        Dimension width = 0, height = 0, border = 0;
        XtVaGetValues(widget, XtNx, &x, XtNy, &y, XtNwidth, &width, XtNheight, &height, XtNborderWidth, &border,
                      nullptr);
        return {x, y, x + width + 2 * border, y + height + 2 * border};
    }
    ScopedClockOverride clock_{kNow};
};

TEST_F(Dialogs, WidgetsTextsLayoutAndClicks) {
    const char* kTitle = "Take {x} now }{";
    const Instant start = kNow + Seconds(3600), end = start + Seconds(1800);
    const FormatFile translator(MakeFileLocation(TestDataPath("translator.xlat")));
    struct Case {
        const char* dialog;
        std::function<void()> show, showAgain;  // the second show changes nothing
        std::function<Widget()> shell;
        std::vector<std::pair<const char*, std::string>> texts;  // widget ("" for the title) and text
        const char *span, *click;                                // the buttons stand under `span`
        Commands clicked;
    };
    // Every fixed text is shown through the translator's file: "[Tag] " and the English key.
    const FormatOverrideScope scope(translator.Overrides(), GlobalFormatOverrideContext());
    auto fixed = [](const char* tag, const std::string& english) { return std::string("[") + tag + "] " + english; };
    const std::pair<const char*, std::string> ok{"ok", fixed("OK", "OK")}, dismiss{"dismiss", ok.second};
    const std::vector<std::pair<const char*, std::string>> confirmation = {
        {"", fixed("PreActionTitle", "Confirmation Required")}, {"actiontitle", kTitle},
        {"staticlabel", fixed("ConfirmationCaption",
                              "This action requires you to acknowledge the following confirmation message:")},
        {"actionconfirmation", "Sure? {x}\t}"}, {"cancel", fixed("Cancel", "Cancel")}, ok};
    ReplaceActions({Action(7, kTitle, "line 1\n\t{actionTitle}", "Sure? {x}\t}"), Action(8, "Other", "Other", "?")});
    const Case cases[] = {
        {"details", [] { ShowActionDetailsDialog(7, Entry(7)); }, [] { ShowActionDetailsDialog(8, Entry(8)); }, ActionDetailsDialog::Shell,
         {{"", fixed("PreviewDialogTitle", "Action Script Preview")}, {"actiondetails", "line 1\n\t{actionTitle}"}, ok},
         "actiondetails", "ok", {{T::DetailsClosed, 0}}},
        {"confirmation", [] { ShowConfirmationRequestDialog(7, Entry(7)); }, [] { ShowConfirmationRequestDialog(8, Entry(8)); },
         ConfirmationDialog::Shell, confirmation, "actionconfirmation", "ok", {{T::ConfirmAccepted, 7}}},
        {"declined", [] { ShowConfirmationRequestDialog(7, Entry(7)); }, nullptr, ConfirmationDialog::Shell, confirmation,
         "actionconfirmation", "cancel", {{T::ConfirmDeclined, 7}}},
        {"message", [] { ShowMessageDialog(Message(3, "Note {x}", "Body {y}")); }, nullptr,
         [] { return MessageDialog::Shell(3); }, {{"", "Note {x}"}, {"actionmessage", "Body {y}"}, dismiss},
         "actionmessage", "dismiss", {}},
        {"completion", [] { ShowMessageDialog(Message(4, "Patch {x}", "unused", {}, true)); }, nullptr,
         [] { return MessageDialog::Shell(4); },
         {{"", fixed("T", "Vorkan notification:")}, {"actionmessage", "[T] Completed: \"Patch {x}\"."}, dismiss},
         "actionmessage", "dismiss", {}},
        {"quiet mode", [&] { ShowQuietModeDialog(end, end), RemoveQuietModeDialog(), ShowQuietModeDialog(start, end); },
         [&] { ShowQuietModeDialog(end, end); },
         QuietModeDialog::Shell,
         {{"", fixed("QuietModeTitle", "Not Currently Available")},
          {"staticlabel", std::string(LocalizedStrings::QuietModeExplanation(start, end).View())}, ok},
         "staticlabel", "ok", {{T::QuietModeClosed, 0}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.dialog);
        c.show();
        const Widget shell = c.shell();
        ASSERT_NE(shell, nullptr);
        if (c.showAgain) c.showAgain();
        EXPECT_EQ(c.shell(), shell);
        for (const auto& [name, text] : c.texts) {
            const Widget widget = name[0] == '\0' ? shell : Child(shell, name);
            ASSERT_NE(widget, nullptr) << name;
            const bool isText = XtIsSubclass(widget, asciiTextWidgetClass);
            EXPECT_EQ(Text(widget, name[0] == '\0' ? XtNtitle : isText ? XtNstring : XtNlabel), text) << name;
            // Every text area is read-only and sensitive, so that it scrolls by hand.
            XawTextEditType editType = XawtextEdit;
            if (isText) XtVaGetValues(widget, XtNeditType, &editType, nullptr);
            EXPECT_TRUE(!isText || (XtIsSensitive(widget) && editType == XawtextRead)) << name;
        }
        Pump();
        const std::array<int, 4> span = Box(Child(shell, c.span));
        std::vector<std::array<int, 4>> row;
        for (const char* name : {"cancel", "ok", "dismiss"}) {
            if (const Widget button = Child(shell, name)) {
                row.push_back(Box(button));
                EXPECT_GE(row.back()[1], span[3]);                                       // below the span
                EXPECT_TRUE(row.size() == 1 || row[row.size() - 2][2] < row.back()[0]);  // apart
            }
        }
        EXPECT_LE(std::abs((row.front()[0] - span[0]) - (span[2] - row.back()[2])), 1);  // centred
        EXPECT_TRUE(AnnouncesDeleteWindowThenIsClosed(display, XtWindow(shell)));
        Pump();
        ASSERT_EQ(c.shell(), shell);  // the window manager's close leaves it open
        EXPECT_EQ(Click(shell, c.click), c.clicked);
        EXPECT_EQ(c.shell(), nullptr);
    }
    EXPECT_TRUE(Sent().empty());  // none of them tells the client anything
}

TEST_F(Dialogs, MessagesAreReusedByIdAndExpireFromTheTick) {
    auto tick = [this](std::int64_t seconds) {
        clock_.Set(kNow + Seconds(seconds));
        RemoveTimedoutMessageDialogs();
        Ids open;
        for (unsigned long long id = 1; id <= 5; ++id) {
            if (MessageDialog::Shell(id) != nullptr) open.push_back(id);
        }
        return open;
    };
    ShowMessageDialog(Message(1, "One", "first", Seconds(10)));
    ShowMessageDialog(Message(2, "Two", "stays"));
    ShowMessageDialog(Message(3, "Three", "a zero time-out ends at the next tick", Seconds(0)));
    ShowMessageDialog(Message(4, "Four", "had a time-out", Seconds(5)));
    ShowMessageDialog(Message(5, "Five", "dismissed"));
    EXPECT_EQ(tick(0), (Ids{1, 2, 4, 5}));
    const Widget first = MessageDialog::Shell(1);
    clock_.Set(kNow + Seconds(5));
    ShowMessageDialog(Message(1, "One again", "second", Seconds(10)));  // now ends at 15 s
    ShowMessageDialog(Message(4, "Four again", "no time-out any more"));
    EXPECT_EQ(MessageDialog::Shell(1), first);
    EXPECT_EQ(Text(first, XtNtitle), "One again");
    EXPECT_EQ(Text(Child(first, "actionmessage"), XtNstring), "second");
    EXPECT_EQ(tick(14), (Ids{1, 2, 4, 5}));
    EXPECT_EQ(tick(15), (Ids{2, 4, 5}));
    EXPECT_EQ(Click(MessageDialog::Shell(5), "dismiss"), Commands{});
    RemoveMessageDialog(5);  // just dismissed: nothing happens
    RemoveMessageDialog(4);
    EXPECT_EQ(tick(86400), (Ids{2}));
    EXPECT_TRUE(Sent().empty());
}

// The action may go between the press and the show: nothing is shown then, and the
// answer is a decline, so the dispatch never waits for a confirmation that is not there.
TEST_F(Dialogs, AConfirmationOfAnActionNoLongerPendingIsDeclinedAtOnce) {
    ShowConfirmationRequestDialog(9, Entry(9));
    EXPECT_EQ(ConfirmationDialog::Shell(), nullptr);
    EXPECT_EQ(Queued(), (Commands{{T::ConfirmDeclined, 9}}));
}

// A title longer than the 500 characters a line holds is cut to fit: every
// window lies wholly on the (1024 x 768) screen, its buttons with it.
TEST_F(Dialogs, LongTitlesAreCutToTheScreen) {
    std::string title;
    for (int i = 0; title.size() < 600; ++i) title += "word\tline\n{x} "[i % 15];
    ReplaceActions({Action(1, title, title.c_str(), title.c_str())});
    ShowActionDetailsDialog(1, Entry(1)), ShowConfirmationRequestDialog(1, Entry(1)), ShowMessageDialog(Message(1, title, title));
    Pump();
    for (const Widget shell : {ActionDetailsDialog::Shell(), ConfirmationDialog::Shell(), MessageDialog::Shell(1)}) {
        ASSERT_NE(shell, nullptr);
        const std::array<int, 4> box = Box(shell);
        EXPECT_TRUE(box[0] >= 0 && box[1] >= 0 && box[2] <= 1024 && box[3] <= 768)
            << box[0] << "," << box[1] << " to " << box[2] << "," << box[3];
    }
}

// The texts a person must read to their end scroll by hand: the wheel moves
// them three lines a notch, the first button on the scroll bar drags the
// thumb to where it is pressed.
TEST_F(Dialogs, TextAreasScrollByHand) {
    std::string lines;
    for (int i = 0; i < 200; ++i) lines += "line " + std::to_string(i) + "\n";
    ReplaceActions({Action(1, "Long", lines.c_str(), lines.c_str())});
    const struct {
        const char* text;
        std::function<Widget()> show;
    } areas[] = {
        {"actiondetails", [] { return ShowActionDetailsDialog(1, Entry(1)), ActionDetailsDialog::Shell(); }},
        {"actionconfirmation", [] { return ShowConfirmationRequestDialog(1, Entry(1)), ConfirmationDialog::Shell(); }},
        {"actionmessage", [&] { return ShowMessageDialog(Message(1, "Long", lines)), MessageDialog::Shell(1); }},
    };
    for (const auto& area : areas) {
        SCOPED_TRACE(area.text);
        const Widget shell = area.show();
        ASSERT_NE(shell, nullptr);
        Pump();
        const std::vector<int> top = ScrollByHand(Child(shell, area.text), Pump);
        ASSERT_EQ(top.size(), 7u);
        EXPECT_EQ(std::vector<int>(top.begin(), top.begin() + 3), (std::vector<int>{3, 6, 3}));
        EXPECT_GT(top[3], 150);  // nine tenths of 200 lines, not a page further
        // No list to move here: Home, Down and Page Down read the text.
        EXPECT_EQ(top[4], 0);
        EXPECT_EQ(top[5], 1);
        EXPECT_GT(top[6], 1);
        ActionDetailsDialog::Hide(), ConfirmationDialog::Hide(), MessageDialog::Remove(1);
        Pump();
    }
}

}  // namespace
