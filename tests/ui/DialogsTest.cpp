// The details, confirmation, message and quiet-mode dialogs in this process,
// on the test program's own Xvfb: widgets, texts (English and under the
// translator's file), layout, the commands real pointer clicks queue, and the
// ending when a dialog's text cannot be shown.

#include <malloc.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <functional>
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
#include "base/files/FileLocation.h"
#include "base/time/Clock.h"
#include "protocol/ClientRequests.h"
#include "tests/support/TestData.h"
#include "tests/support/XvfbEnvironment.h"
#include "tests/ui/ChildProcess.h"
#include "text/FormatFile.h"
#include "text/LocalizedStrings.h"
#include "ui/ActionDetailsDialog.h"
#include "ui/ConfirmationDialog.h"
#include "ui/MessageDialog.h"
#include "ui/QuietModeDialog.h"
#include "ui/XApplication.h"
#include "ui/XDialogCalls.h"
#include "ui/XGlobals.h"

#include <X11/Shell.h>
#include <X11/StringDefs.h>
#include <X11/Xaw/AsciiText.h>
#include <X11/Xaw/Command.h>
#include <X11/Xaw/Label.h>
#include <X11/extensions/XTest.h>

// The Athena vendor shell's input-method record is the library's, not ours.
extern "C" const char* __lsan_default_suppressions() { return "leak:_XawImInitialize\n"; }
extern "C" const char* __asan_default_options() { return "fast_unwind_on_malloc=0"; }

namespace {

::testing::Environment* const xvfb = AddXvfbEnvironment();
using T = UICommandType;
using Commands = std::vector<std::pair<T, unsigned long long>>;
const Instant kNow(1795348800LL * kMicrosecondsPerSecond);
constexpr std::int64_t kSecond = kMicrosecondsPerSecond;

bool actionDialogShown = true;
class Screen : public XDialogCalls {  // as main wires it, with an action dialog that is only a flag
    bool IsActionRequestDialogShown() override { return actionDialogShown; }
};

ActionRequest Action(unsigned long long id, const std::string& title, const char* preview, const char* confirm) {
    ActionRequest action;
    action.id = id;
    action.title = SharedUString<UTF8>(UStringRef<UTF8>(title));
    if (preview != nullptr) action.preview = SharedUString<UTF8>(UStringRef<UTF8>(preview));
    if (confirm != nullptr) action.preActionMessage = SharedUString<UTF8>(UStringRef<UTF8>(confirm));
    return action;
}

MessageRequest Message(unsigned long long id, const std::string& title, const std::string& text,
                       std::optional<std::int64_t> timeoutSeconds = std::nullopt, bool completion = false) {
    MessageRequest request;
    request.id = id;
    request.title = SharedUString<UTF8>(UStringRef<UTF8>(title));
    request.message = SharedUString<UTF8>(UStringRef<UTF8>(text));
    request.isCompletionMessage = completion;
    if (timeoutSeconds) request.timeout = TimeInterval(*timeoutSeconds * kSecond);
    return request;
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
}

// One display for the whole suite: the toolkit's helpers cache server resources
// per screen, which a display reopened at the same address would find stale.
class Dialogs : public ::testing::Test {
protected:
    static void SetUpTestSuite() { OpenDisplay(); }
    static void TearDownTestSuite() { DestroyApplicationContext(); }
    void SetUp() override {
        ASSERT_NE(display, nullptr);
        actions.clear();
        actionDialogShown = initialized = true;
        inQuietMode = takeAllPending = false;
        Queued();
        Sent();
    }
    void TearDown() override {
        ActionDetailsDialog::Hide();
        ConfirmationDialog::Hide();
        QuietModeDialog::Remove();
        for (unsigned long long id = 0; id <= 500; ++id) MessageDialog::Remove(id);
        Pump();
    }

    static void Pump() {
        XSync(display, False);
        while (XtAppPending(app_context) & XtIMXEvent) XtAppProcessEvent(app_context, XtIMXEvent);
    }
    static Commands Queued() {
        FiFoQueue<std::unique_ptr<UICommand>> queue;
        uiCommandQ.ReadMessages(queue);
        Commands commands;
        for (; !queue.IsEmpty(); queue.TakeFront()) commands.emplace_back(queue.Front()->type, queue.Front()->id);
        return commands;
    }
    static std::vector<std::string> Sent() {
        FiFoQueue<UIMessage> queue;
        writeQ.ReadMessages(queue);
        std::vector<std::string> texts;
        while (!queue.IsEmpty()) texts.push_back(queue.TakeFront().text.Str());
        return texts;
    }
    // Presses and releases the first button over the middle of the widget, through the server.
    static Commands Click(Widget shell, const char* name) {
        const Widget button = XtNameToWidget(shell, (std::string("form.") + name).c_str());
        EXPECT_NE(button, nullptr) << name;
        if (button == nullptr) return {};
        Pump();
        int x = 0, y = 0;
        Window child = 0;
        XTranslateCoordinates(display, XtWindow(button), DefaultRootWindow(display), 3, 3, &x, &y, &child);
        XTestFakeMotionEvent(display, -1, x, y, CurrentTime);
        XTestFakeButtonEvent(display, 1, True, CurrentTime);
        XTestFakeButtonEvent(display, 1, False, CurrentTime);
        Pump();
        return Queued();
    }
    static std::string Text(Widget widget, const char* resource) {
        String value = nullptr;
        XtVaGetValues(widget, resource, &value, nullptr);
        return value != nullptr ? value : "";
    }
    struct Box {
        int left, top, right, bottom;
    };
    static Box BoxOf(Widget widget) {
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
    const Instant start = kNow + TimeInterval(3600 * kSecond), end = start + TimeInterval(1800 * kSecond);
    const FormatFile translator(MakeFileLocation(TestDataPath("translator.xlat")));
    const Atom protocols = XInternAtom(display, "WM_PROTOCOLS", False);
    const Atom deleteWindow = XInternAtom(display, "WM_DELETE_WINDOW", False);
    struct Case {
        const char* dialog;
        std::function<void()> show, showAgain;
        std::function<Widget()> shell;
        std::vector<std::pair<const char*, std::string>> texts;  // name ("" for the title) and label or string
        const char* span;
        const char* click;
        Commands clicked;
    };
    for (const bool translated : {false, true}) {
        SCOPED_TRACE(translated ? "translated" : "English");
        std::unique_ptr<FormatOverrideScope> scope;
        if (translated) scope = std::make_unique<FormatOverrideScope>(translator.Overrides(), GlobalFormatOverrideContext());
        auto fixed = [&](const char* tag, const std::string& english) {
            return translated ? std::string("[") + tag + "] " + english : english;
        };
        const std::string sentence = "This action requires you to acknowledge the following confirmation message:";
        const std::string completed = translated ? "[T] Completed: \"Patch {x}\"." : "Action \"Patch {x}\" has completed.";
        const std::vector<std::pair<const char*, std::string>> confirmationTexts = {
            {"", fixed("PreActionTitle", "Confirmation Required")}, {"actiontitle", kTitle},
            {"staticlabel", fixed("ConfirmationCaption", sentence)}, {"actionconfirmation", "Sure? {x}\t}"},
            {"cancel", fixed("Cancel", "Cancel")}, {"ok", fixed("OK", "OK")}};
        actions = {Action(7, kTitle, "line 1\n\t{actionTitle}", "Sure? {x}\t}"), Action(8, "Other", "Other", "?")};
        const Case cases[] = {
            {"details", [] { ShowActionDetailsDialog(7); }, [] { ShowActionDetailsDialog(8); },
             ActionDetailsDialog::Shell,
             {{"", fixed("PreviewDialogTitle", "Action Script Preview")}, {"actiondetails", "line 1\n\t{actionTitle}"},
              {"ok", fixed("OK", "OK")}},
             "actiondetails", "ok", {{T::DetailsClosed, 0}}},
            {"confirmation", [] { ShowConfirmationRequestDialog(7); }, [] { ShowConfirmationRequestDialog(8); },
             ConfirmationDialog::Shell, confirmationTexts, "actionconfirmation", "ok",
             {{T::ConfirmAccepted, 7}}},
            {"confirmation declined", [] { ShowConfirmationRequestDialog(7); }, [] {}, ConfirmationDialog::Shell,
             confirmationTexts, "actionconfirmation", "cancel", {{T::ConfirmDeclined, 7}}},
            {"message", [] { ShowMessageDialog(Message(3, "Note {x}", "Body {y}")); }, [] {},
             [] { return MessageDialog::Shell(3); },
             {{"", "Note {x}"}, {"actionmessage", "Body {y}"}, {"dismiss", fixed("OK", "OK")}}, "actionmessage",
             "dismiss", {}},
            {"completion", [] { ShowMessageDialog(Message(4, "Patch {x}", "unused", std::nullopt, true)); }, [] {},
             [] { return MessageDialog::Shell(4); },
             {{"", fixed("T", "Vorkan notification:")}, {"actionmessage", completed}, {"dismiss", fixed("OK", "OK")}},
             "actionmessage", "dismiss", {}},
            {"quiet mode", [&] { ShowQuietModeDialog(start, end); },
             [&] { ShowQuietModeDialog(end, end + TimeInterval(60 * kSecond)); }, QuietModeDialog::Shell,
             {{"", fixed("QuietModeTitle", "Not Currently Available")},
              {"staticlabel", std::string(LocalizedStrings::QuietModeExplanation(start, end).View())},
              {"ok", fixed("OK", "OK")}},
             "staticlabel", "ok", {{T::QuietModeClosed, 0}}},
        };
        for (const Case& c : cases) {
            SCOPED_TRACE(c.dialog);
            c.show();
            const Widget shell = c.shell();
            ASSERT_NE(shell, nullptr);
            c.showAgain();
            EXPECT_EQ(c.shell(), shell);
            for (const auto& [name, text] : c.texts) {
                const Widget widget = name[0] == '\0' ? shell : XtNameToWidget(shell, (std::string("form.") + name).c_str());
                ASSERT_NE(widget, nullptr) << name;
                const bool isText = XtIsSubclass(widget, asciiTextWidgetClass);
                EXPECT_EQ(Text(widget, name[0] == '\0' ? XtNtitle : isText ? XtNstring : XtNlabel), text) << name;
                if (isText) {
                    EXPECT_EQ(XtIsSensitive(widget), c.span == std::string("actionmessage")) << name;
                }
            }
            Pump();
            const Box span = BoxOf(XtNameToWidget(shell, (std::string("form.") + c.span).c_str()));
            std::vector<Box> row;
            for (const char* name : {"cancel", "ok", "dismiss"}) {
                if (const Widget button = XtNameToWidget(shell, (std::string("form.") + name).c_str())) {
                    EXPECT_TRUE(XtIsSubclass(button, commandWidgetClass)) << name;
                    row.push_back(BoxOf(button));
                    EXPECT_GE(row.back().top, span.bottom);
                    if (row.size() > 1) {
                        EXPECT_LT(row[row.size() - 2].right, row.back().left);
                    }
                }
            }
            EXPECT_LE(std::abs((row.front().left - span.left) - (span.right - row.back().right)), 1);
            Atom* announced = nullptr;
            int count = 0;
            ASSERT_NE(XGetWMProtocols(display, XtWindow(shell), &announced, &count), 0);
            EXPECT_EQ(std::vector<Atom>(announced, announced + count), std::vector<Atom>{deleteWindow});
            XFree(announced);
            XEvent close{};
            close.xclient = {ClientMessage, 0, False, display, XtWindow(shell), protocols, 32, {}};
            close.xclient.data.l[0] = static_cast<long>(deleteWindow);
            XSendEvent(display, XtWindow(shell), False, NoEventMask, &close);
            Pump();
            ASSERT_EQ(c.shell(), shell);  // the window manager's close leaves it open
            EXPECT_EQ(Click(shell, c.click), c.clicked);
            EXPECT_EQ(c.shell(), nullptr);
        }
    }
    EXPECT_TRUE(Sent().empty());  // none of them tells the client anything
}

TEST_F(Dialogs, MessagesAreReusedByIdAndExpireFromTheTick) {
    auto open = [] {
        std::vector<unsigned long long> ids;
        for (unsigned long long id = 1; id <= 5; ++id) {
            if (MessageDialog::Shell(id) != nullptr) ids.push_back(id);
        }
        return ids;
    };
    ShowMessageDialog(Message(1, "One", "first", 10));
    ShowMessageDialog(Message(2, "Two", "stays"));
    ShowMessageDialog(Message(3, "Three", "at the next tick", 0));
    ShowMessageDialog(Message(4, "Four", "had a time-out", 5));
    ShowMessageDialog(Message(5, "Five", "dismissed"));
    RemoveTimedoutMessageDialogs();
    EXPECT_EQ(open(), (std::vector<unsigned long long>{1, 2, 4, 5}));

    const Widget first = MessageDialog::Shell(1);
    clock_.Set(kNow + TimeInterval(5 * kSecond));
    ShowMessageDialog(Message(1, "One again", "second", 10));  // restarted: now expires at 15 s
    ShowMessageDialog(Message(4, "Four again", "no time-out any more"));
    EXPECT_EQ(MessageDialog::Shell(1), first);
    EXPECT_EQ(Text(first, XtNtitle), "One again");
    EXPECT_EQ(Text(XtNameToWidget(first, "form.actionmessage"), XtNstring), "second");
    clock_.Set(kNow + TimeInterval(14 * kSecond));
    RemoveTimedoutMessageDialogs();
    EXPECT_EQ(open(), (std::vector<unsigned long long>{1, 2, 4, 5}));
    clock_.Set(kNow + TimeInterval(15 * kSecond));
    RemoveTimedoutMessageDialogs();
    EXPECT_EQ(open(), (std::vector<unsigned long long>{2, 4, 5}));

    EXPECT_EQ(Click(MessageDialog::Shell(5), "dismiss"), Commands{});
    RemoveMessageDialog(5);  // just dismissed: nothing happens
    RemoveMessageDialog(4);
    clock_.Set(kNow + TimeInterval(86400 * kSecond));
    RemoveTimedoutMessageDialogs();
    EXPECT_EQ(open(), (std::vector<unsigned long long>{2}));
    EXPECT_TRUE(Sent().empty());
}

TEST_F(Dialogs, TheQuietModeNoticeThroughTheDispatch) {
    auto receive = [](const std::string& element) {
        UIMessage message;
        message.text = AutoUString<UTF8>("<ClientToUI>" + element + "</ClientToUI>");
        readQ.WriteMessage(std::move(message));
        ProcessMessagesFromClient();
    };
    const std::string start = "<QuietModeStart><StartTime>Sun, 22 Nov 2026 12:00:00 +0000</StartTime>"
                              "<EndTime>Sun, 22 Nov 2026 13:00:00 +0000</EndTime></QuietModeStart>";
    receive(start);
    const Widget notice = QuietModeDialog::Shell();
    ASSERT_NE(notice, nullptr);
    const std::string text = Text(XtNameToWidget(notice, "form.staticlabel"), XtNlabel);
    receive("<QuietModeStart><StartTime>Sun, 22 Nov 2026 18:00:00 +0000</StartTime>"
            "<EndTime>Sun, 22 Nov 2026 19:00:00 +0000</EndTime></QuietModeStart>");
    EXPECT_EQ(QuietModeDialog::Shell(), notice);
    EXPECT_EQ(Text(XtNameToWidget(notice, "form.staticlabel"), XtNlabel), text);
    EXPECT_EQ(Click(notice, "ok"), (Commands{{T::QuietModeClosed, 0}}));
    receive(start);  // shown again after "ok"
    EXPECT_NE(QuietModeDialog::Shell(), nullptr);
    receive("<QuietModeEnd></QuietModeEnd>");
    EXPECT_EQ(QuietModeDialog::Shell(), nullptr);
    actionDialogShown = false;
    receive(start);  // only while the action dialog is shown
    EXPECT_EQ(QuietModeDialog::Shell(), nullptr);
}

TEST_F(Dialogs, TakeAllConfirmsEachActionFromThePendingList) {
    auto taken = [](std::vector<unsigned long long> ids) {
        std::vector<std::string> documents;
        for (unsigned long long id : ids) documents.push_back(std::string(ConvertToUIToClientXML(ActionTaken(id, false, false)).View()));
        return documents;
    };
    // An action with a confirmation arriving in the same tick as the take-all.
    UIMessage message;
    message.text = AutoUString<UTF8>(
        "<ClientToUI><ActionRequest><ID>7</ID><Title>New</Title><PreActionMessage>Sure?</PreActionMessage>"
        "</ActionRequest></ClientToUI>");
    readQ.WriteMessage(std::move(message));
    QueueCommand(T::TakeAll, 0, 0, 0);
    RunClientUITick();
    ASSERT_NE(ConfirmationDialog::Shell(), nullptr);
    EXPECT_EQ(Text(XtNameToWidget(ConfirmationDialog::Shell(), "form.actiontitle"), XtNlabel), "New");
    EXPECT_EQ(Click(ConfirmationDialog::Shell(), "ok"), (Commands{{T::ConfirmAccepted, 7}}));
    QueueCommand(T::ConfirmAccepted, 7, 0, 0);
    RunClientUITick();
    EXPECT_EQ(Sent(), taken({7}));

    // Two actions that both need a confirmation: one dialog after the other.
    actions = {Action(1, "First", nullptr, "one?"), Action(2, "Second", nullptr, "two?")};
    QueueCommand(T::TakeAll, 0, 0, 0);
    RunClientUITick();
    for (const char* title : {"First", "Second"}) {
        ASSERT_NE(ConfirmationDialog::Shell(), nullptr) << title;
        EXPECT_EQ(Text(XtNameToWidget(ConfirmationDialog::Shell(), "form.actiontitle"), XtNlabel), title);
        const Commands accepted = Click(ConfirmationDialog::Shell(), "ok");
        for (const auto& [type, id] : accepted) QueueCommand(type, id, 0, 0);
        RunClientUITick();
    }
    EXPECT_EQ(Sent(), taken({1, 2}));
    EXPECT_TRUE(actions.empty());

    // An ID no longer pending shows nothing and declines, so the action dialog is enabled again.
    ShowConfirmationRequestDialog(9);
    EXPECT_EQ(ConfirmationDialog::Shell(), nullptr);
    EXPECT_EQ(Queued(), (Commands{{T::ConfirmDeclined, 9}}));
}

TEST_F(Dialogs, LongTextsAndManyMessagesAreShown) {
    std::string huge;
    for (int i = 0; huge.size() < 100000; ++i) huge += "word\tline\n{x} "[i % 15];
    actions = {Action(1, huge, huge.c_str(), huge.c_str())};
    ShowActionDetailsDialog(1);
    ShowConfirmationRequestDialog(1);
    ShowMessageDialog(Message(1, huge, huge));
    Pump();
    for (const Widget shell : {ActionDetailsDialog::Shell(), ConfirmationDialog::Shell(), MessageDialog::Shell(1)}) {
        ASSERT_NE(shell, nullptr);
        const Box box = BoxOf(shell);
        EXPECT_GT(box.right - box.left, 0);
        EXPECT_LT(box.right - box.left, 32768);
    }
    for (unsigned long long id = 2; id <= 500; ++id) ShowMessageDialog(Message(id, "Many", "messages"));
    Pump();
    EXPECT_EQ(MessageDialog::Count(), 500u);
}

TEST_F(Dialogs, ShowingAndHidingAThousandTimesDoesNotGrow) {
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "the sanitizer's allocator holds freed blocks back, so the heap cannot be read";
#endif
    // glibc's per-thread cache keeps up to tens of KiB of freed blocks that mallinfo2
    // counts as in use: the heap is read in a copy of this program with the cache off.
    const std::string noCache = "glibc.malloc.tcache_count=0";
    if (const char* tunables = getenv("GLIBC_TUNABLES"); tunables == nullptr || tunables != noCache) {
        const ::testing::TestInfo* test = ::testing::UnitTest::GetInstance()->current_test_info();
        ChildProcess copy;
        ASSERT_TRUE(copy.Exec("/proc/self/exe", {"GLIBC_TUNABLES=" + noCache, std::string("PATH=") + getenv("PATH"),
                                                 std::string("GTEST_FILTER=") + test->test_suite_name() + "." +
                                                     test->name()}));
        EXPECT_EQ(copy.WaitForExit(std::chrono::seconds(120)), 0);
        return;
    }
    actions = {Action(1, "t", "preview", "sure?")};
    auto heap = [] { return mallinfo2().uordblks; };
    std::size_t atTen = 0;
    for (int cycle = 1; cycle <= 1000; ++cycle) {
        ShowActionDetailsDialog(1);
        ActionDetailsDialog::Hide();
        ShowConfirmationRequestDialog(1);
        ConfirmationDialog::Hide();
        ShowMessageDialog(Message(1, "t", "m", 5));
        ShowMessageDialog(Message(1, "reused", "in place"));
        RemoveMessageDialog(1);
        ShowQuietModeDialog(kNow, kNow);
        RemoveQuietModeDialog();
        Pump();
        if (cycle == 10) atTen = heap();
    }
    long pages = 0, resident = 0;
    if (FILE* statm = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(statm, "%ld %ld", &pages, &resident) != 2) resident = 0;
        std::fclose(statm);
    }
    std::fprintf(stderr, "heap in use: %zu bytes after 10 cycles, %zu after 1000; RSS %ld KiB\n", atTen, heap(),
                resident * sysconf(_SC_PAGESIZE) / 1024);
    EXPECT_LE(heap(), atTen + 8192);
}

// Each dialog whose text the locale ("C" here) cannot show, in a child on the pipe.
TEST(DialogFailures, TellTheClientWhichDialogTwiceAndEndWith0) {
    struct Failure {
        const char* dialog;
        void (*provoke)();
    };
    static const Failure failures[] = {
        {"ActionDetailsDialog", [] { actions = {Action(1, "t", "\xc3\xa9", nullptr)}; ShowActionDetailsDialog(1); }},
        {"ConfirmationDialog", [] { actions = {Action(1, "t", nullptr, "\xc3\xa9")}; ShowConfirmationRequestDialog(1); }},
        {"MessageDialog", [] { ShowMessageDialog(Message(1, "\xc3\xa9", "m")); }},
        {"MessageDialog", [] { ShowMessageDialog(Message(1, "t", "m")); ShowMessageDialog(Message(1, "t", "\xc3\xa9")); }},
        {"QuietModeDialog", [] {
             static const FormatFile file(std::string("Not Currently Available\t\xc3\xa9\n"));
             static const FormatOverrideScope scope(file.Overrides(), GlobalFormatOverrideContext());
             ShowQuietModeDialog(kNow, kNow);
         }},
    };
    std::array<ChildProcess, std::size(failures)> children;
    for (std::size_t i = 0; i < children.size(); ++i) {
        ASSERT_TRUE(children[i].Fork([i] {
            clientPipe = new UnixPipe(readQ, writeQ);
            clientPipe->AddReference();
            clientPipe->Start(0, 1);
            OpenDisplay();
            failures[i].provoke();
            return 3;  // the ending never comes back
        }));
    }
    for (std::size_t i = 0; i < children.size(); ++i) {
        SCOPED_TRACE(i);
        std::vector<std::string> frames;
        while (auto frame = children[i].ReadFrame(std::chrono::seconds(20))) frames.push_back(*frame);
        EXPECT_EQ(children[i].WaitForExit(std::chrono::seconds(20)), 0);
        ClientUIErrorMessage error(ClientUIErrorMessage::DialogError, failures[i].dialog);
        EXPECT_EQ(frames, std::vector<std::string>(2, std::string(ConvertToXML(error).View())));
    }
}

}  // namespace
