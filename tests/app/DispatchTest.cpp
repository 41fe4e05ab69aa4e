#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <thread>
#include <unistd.h>

#include "actions/PendingActions.h"
#include "app/ClientLink.h"
#include "app/Dispatch.h"
#include "app/Exit.h"
#include "app/OpenRequest.h"
#include "app/Settings.h"
#include "app/Tick.h"
#include "base/time/Clock.h"
#include "pipe/FiFoQueue.h"
#include "pipe/UnixPipe.h"
#include "tests/support/RecordingDialogs.h"
#include "tests/support/Sandbox.h"

namespace {

namespace fs = std::filesystem;
using Strings = std::vector<std::string>;
using IdList = std::vector<unsigned long long>;
using T = UICommandType;

// The pinned now: Tue, 14 Nov 2023 22:13:20 +0000.
Instant At(std::int64_t secondsFromNow) { return Instant((1700000000 + secondsFromNow) * kMicrosecondsPerSecond); }

const std::string kShow = "ShowActionRequestDialog(false,PT5M,true)", kUpdate = "UpdateActionRequestDialog()",
                  kEnable = "EnableActionRequestDialog()", kDisable = "DisableActionRequestDialog()", kShown = "IsActionRequestDialogShown()",
                  kHidden = "CreateHiddenWindowOnce()", kTimeouts = "RemoveTimedoutMessageDialogs()",
                  kNoQuiet = "RemoveQuietModeDialog()", kRaise = "RaiseActionRequestDialog()",
                  kUrgent = "MarkActionRequestDialogUrgent()";

struct ObservedExit {
    int count = 0, status = 0;
    std::string reason;
} observedExit;

// Resets every global the dispatch touches; the dialogs are recorded, not shown.
class Dispatch : public ::testing::Test {
protected:
    void SetUp() override {
        SetExitFunctionForTesting([](int status, const char* reason) {
            observedExit = {observedExit.count + 1, status, reason};
        });
        // Whatever an earlier test left queued or held back is handled and dropped first.
        clientPipe = nullptr;
        initialized = true;
        ProcessMessagesFromClient();
        ProcessMessagesFromClient();
        ProcessMessagesFromUI();
        Sent();
        actions.clear();
        initialized = inQuietMode = false;
        ForgetTakeAll();
        m_postponedTo = Instant();
        m_remindInterval = TimeInterval(300 * kMicrosecondsPerSecond);
        m_snoozable = true;
        observedExit = ObservedExit();
        RecordingDialogs::Reset();
    }
    void TearDown() override { SetExitFunctionForTesting(nullptr); }

    static void Receive(const std::string& text) {
        UIMessage message;
        message.text = AutoUString<UTF8>(text);
        readQ.WriteMessage(std::move(message));
    }
    static std::string Doc(const std::string& children) { return "<ClientToUI>" + children + "</ClientToUI>"; }
    static void Handle(const std::string& children) {
        Receive(Doc(children));
        ProcessMessagesFromClient();
    }
    static std::string Action(unsigned long long id, const std::string& more = "") {
        const std::string n = std::to_string(id);
        return "<ActionRequest><ID>" + n + "</ID><Title>Action " + n + "</Title>" + more + "</ActionRequest>";
    }
    static std::string Forced(unsigned long long id, const char* deadline) {
        return Action(id, std::string("<ForceRun>true</ForceRun><Deadline>") + deadline + "</Deadline>");
    }
    static void Run(T type, unsigned long long id = 0, long minutes = 0, long long seconds = 0) {
        // An answer comes from the confirmation, which closed as it was pressed.
        if (type == T::ConfirmAccepted || type == T::ConfirmDeclined) RecordingDialogs::CloseConfirmation();
        QueueCommand(type, id, minutes, seconds);
        ProcessMessagesFromUI();
    }
    // Every document queued for the client since the last call, oldest first.
    static Strings Sent() {
        FiFoQueue<UIMessage> queued;
        writeQ.ReadMessages(queued);
        Strings texts;
        while (!queued.IsEmpty()) texts.push_back(queued.TakeFront().text.Str());
        return texts;
    }
    static std::string Taken(unsigned long long id, bool cancel = false) {
        return ConvertToUIToClientXML(ActionTaken(id, cancel)).Str();
    }
    static IdList Ids() {
        IdList ids;
        for (const ActionRequest& action : actions) ids.push_back(action.id);
        return ids;
    }
    static Strings Calls() { return RecordingDialogs::Take(); }

    ScopedClockOverride clock_{At(0)};
};

// ---- Client messages ----

TEST_F(Dispatch, ActionRequestsAreAppendedAndShownEvenWhileSnoozed) {
    m_postponedTo = At(3600);
    Receive("");  // skipped, not a bad message
    Receive(Doc("<Unknown><ID>1</ID></Unknown>" + Action(7) + Action(3)));
    Receive("<AnyRootAtAll>" + Action(7) + "</AnyRootAtAll>");
    ProcessMessagesFromClient();
    EXPECT_EQ(Ids(), (IdList{7, 3, 7}));  // a duplicate ID is a second entry
    EXPECT_EQ(Calls(), (Strings{kUpdate, kShown, kShow, kUpdate, kShown, kShow, kUpdate, kShown, kShow}));
    EXPECT_TRUE(Sent().empty());
    // Over a dialog already up, a new action asks for attention but does not raise it.
    RecordingDialogs::SetActionDialogShown(true);
    Handle(Action(8));
    EXPECT_EQ(Calls(), (Strings{kUpdate, kShown, kShow, kUrgent}));
}

TEST_F(Dispatch, RemoveRequestByType) {
    struct Case { const char* type; IdList left; Strings calls; };
    const Case cases[] = {
        {"Action", {5, 6}, {kUpdate}},
        {"All", {5, 6}, {kUpdate, "RemoveMessageDialog(5)"}},
        {"Message", {5, 5, 6}, {"RemoveMessageDialog(5)"}},
        {"Offer", {5, 5, 6}, {}},
        {"action", {5, 6}, {kUpdate, "RemoveMessageDialog(5)"}},  // the words are exact
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.type);
        actions.clear();
        Handle(Action(5) + Action(5) + Action(6));
        Calls();
        Handle(std::string("<RemoveRequest><RemoveType>") + c.type + "</RemoveType><ID>5</ID></RemoveRequest>");
        EXPECT_EQ(Ids(), c.left);
        EXPECT_EQ(Calls(), c.calls);
    }
    EXPECT_TRUE(Sent().empty());
}

TEST_F(Dispatch, MessageAndQuietModeElements) {
    const std::string message = "<MessageRequest><Title>Done</Title><Message>m</Message><ID>12</ID></MessageRequest>";
    const std::string start = "<QuietModeStart><StartTime>Tue, 14 Nov 2023 22:13:20 +0000</StartTime><EndTime>"
                              "Tue, 14 Nov 2023 23:13:20 +0000</EndTime></QuietModeStart>";
    const std::string end = "<QuietModeEnd><Ignored>x</Ignored></QuietModeEnd>";
    // A trailing Action shows that a failure dropped the rest of the document.
    struct Case { const char* what; std::string xml; bool quiet, shown; const char* fail; bool after; Strings calls; };
    const Case cases[] = {
        {"message", message, false, false, "", false, {"ShowMessageDialog(12,Done)"}},
        {"start, hidden", start, false, false, "", true, {kShown}},
        {"start, shown", start, false, true, "", true,
         {kShown, "ShowQuietModeDialog(1700000000,1700003600)", "DisableActionRequestDialog()"}},
        {"start unreadable", "<QuietModeStart><StartTime>soon</StartTime></QuietModeStart>" + Action(1), false, true,
         "", true, {}},
        {"end, hidden", end, true, false, "", false, {kNoQuiet, kShown}},
        {"end, shown", end, true, true, "", false, {kNoQuiet, kShown, kUpdate, kEnable}},
        {"end, notice fails", end + Action(1), true, true, "RemoveQuietModeDialog", false, {kNoQuiet}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        RecordingDialogs::Reset();
        RecordingDialogs::SetActionDialogShown(c.shown);
        RecordingDialogs::FailOn(c.fail);
        inQuietMode = c.quiet;
        Handle(c.xml);
        EXPECT_EQ(inQuietMode, c.after);
        EXPECT_EQ(Calls(), c.calls);
        EXPECT_TRUE(actions.empty());
    }
}

TEST_F(Dispatch, ABadMessageDropsTheRestOfItsBatchOnly) {
    const char* bad[] = {
        "not xml at all <",
        "<ClientToUI><ActionRequest><ID>twelve</ID></ActionRequest></ClientToUI>",
    };
    for (const char* text : bad) {
        SCOPED_TRACE(text);
        actions.clear();
        Receive(Doc(Action(1)));
        Receive(text);
        Receive(Doc(Action(2)));
        ProcessMessagesFromClient();
        EXPECT_EQ(Ids(), (IdList{1}));
        Handle(Action(3));
        EXPECT_EQ(Ids(), (IdList{1, 3}));
    }
}

// Initialisation writes only inside the test's sandbox.
class Initialisation : public Dispatch {
protected:
    std::string Init(const char* base, const char* interval = "PT10M", const std::string& more = "") const {
        return "<InitializationInfo><BaseDirectory>" + root_ + base + "</BaseDirectory>" + more +
               "<InitialUISettings><RemindInterval>" + interval +
               "</RemindInterval><AllowSnooze>false</AllowSnooze></InitialUISettings></InitializationInfo>";
    }
    const Sandbox sandbox_;
    const std::string root_ = sandbox_.Root();
};

TEST_F(Initialisation, HoldsBackTheRestOfTheBatchLosesTheRestOfTheDocumentAndHappensOnce) {
    Receive(Doc(Init("/base") + Action(1)));
    Receive(Doc(Action(2)));
    ProcessMessagesFromClient();
    EXPECT_TRUE(initialized);
    EXPECT_TRUE(fs::is_directory(root_ + "/base"));
    EXPECT_TRUE(actions.empty());
    // The held-back message comes before anything that arrived since.
    Receive(Doc(Init("/second", "PT1H") + Action(3)));
    ProcessMessagesFromClient();
    EXPECT_EQ(Ids(), (IdList{2}));
    EXPECT_EQ(Calls(), (Strings{kUpdate, kShown, "ShowActionRequestDialog(false,PT10M,false)"}));
    ProcessMessagesFromClient();
    EXPECT_EQ(Ids(), (IdList{2, 3}));
    EXPECT_FALSE(fs::exists(root_ + "/second"));  // a second one is ignored
    EXPECT_EQ(m_remindInterval, TimeInterval(600 * kMicrosecondsPerSecond));
}

TEST_F(Initialisation, AFailedOneLeavesTheProgramWaiting) {
    Receive(Doc(Init("/base", "PT1M", "<SupportFiles><FileName></FileName><Content>YQ==</Content></SupportFiles>")));
    Receive(Doc(Action(1)));
    ProcessMessagesFromClient();
    EXPECT_FALSE(initialized);
    EXPECT_TRUE(actions.empty());
    Handle(Init("/base"));
    EXPECT_TRUE(initialized);
}

// ---- User commands, against actions 1, 2 (asks for confirmation) and 3 ----

class Commands : public Dispatch {
protected:
    void SetUp() override {
        Dispatch::SetUp();
        Handle(Action(1) + Action(2, "<PreActionMessage>Save first</PreActionMessage>") + Action(3));
        Calls();
    }
};

TEST_F(Commands, SingleCommands) {
    struct Case { const char* what; T type; unsigned long long id; Strings sent; IdList left; Strings calls; bool asked = false; };
    const Case cases[] = {
        {"take", T::TakeAction, 3, {Taken(3)}, {1, 2}, {kUpdate, kEnable}},
        {"take needing confirmation", T::TakeAction, 2, {}, {1, 2, 3}, {"ShowConfirmationRequestDialog(2)", kDisable}},
        {"take gone", T::TakeAction, 9, {}, {1, 2, 3}, {kEnable}},
        {"cancel", T::CancelAction, 2, {Taken(2, true)}, {1, 3}, {kUpdate, kEnable}},
        {"cancel gone", T::CancelAction, 9, {}, {1, 2, 3}, {kEnable}},
        {"accept", T::ConfirmAccepted, 2, {Taken(2)}, {1, 3}, {kUpdate, kEnable}, true},
        {"accept naming another", T::ConfirmAccepted, 3, {Taken(2)}, {1, 3}, {kUpdate, kEnable}, true},
        {"accept nothing asked", T::ConfirmAccepted, 2, {}, {1, 2, 3}, {kEnable}},
        {"decline", T::ConfirmDeclined, 2, {}, {1, 2, 3}, {kEnable}, true},
        {"details", T::ShowDetails, 3, {}, {1, 2, 3}, {"ShowActionDetailsDialog(3)", kDisable}},
        {"details gone", T::ShowDetails, 9, {}, {1, 2, 3}, {kEnable}},
        {"details closed", T::DetailsClosed, 0, {}, {1, 2, 3}, {kEnable}},
        {"quiet mode closed", T::QuietModeClosed, 0, {}, {1, 2, 3}, {kEnable}},
        {"open", T::OpenDialog, 0, {}, {1, 2, 3}, {kShow, kRaise}},
        {"unknown type", static_cast<T>(42), 1, {}, {1, 2, 3}, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        SetUp();
        if (c.asked) Run(T::TakeAction, 2), Calls();  // the confirmation of 2 is open
        Run(c.type, c.id);
        EXPECT_EQ(Sent(), c.sent);
        EXPECT_EQ(Ids(), c.left);
        EXPECT_EQ(Calls(), c.calls);
        EXPECT_FALSE(takeAllPending);
    }
}

// Take-all's rules are held by the random conversations (ConversationTest).

TEST_F(Commands, SnoozeSendsTheReminderTimeAndTheInterval) {
    // seconds: until the earliest deadline; minutes below 0 count back from it. The
    // reminder goes out in universal time at the end of the postponement.
    struct Case { long minutes; long long seconds; std::int64_t postponedBy, by; };
    const Case cases[] = {
        {2, 30, 120, 120}, {0, 30, 30, 30}, {-15, 3600, 2700, -900},
        {-5, 120, -180, -300},  // already within the five minutes
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.minutes);
        const TimeInterval by(c.by * kMicrosecondsPerSecond);
        Run(T::Snooze, 0, c.minutes, c.seconds);
        EXPECT_EQ(Sent(), (Strings{ConvertToUIToClientXML(RemindTime(TimeObject(At(c.postponedBy), TimeZone(0)))).Str(),
                                   ConvertToUIToClientXML(RemindInterval(by)).Str()}));
        EXPECT_EQ(m_postponedTo, At(c.postponedBy));
        EXPECT_EQ(m_remindInterval, by);
        EXPECT_TRUE(Calls().empty());
    }
    actions.clear();
    Run(T::Snooze, 0, 5, 0);
    EXPECT_TRUE(Sent().empty());  // nothing pending, nothing to snooze
}

TEST_F(Commands, AFailingCommandIsDroppedAlone) {
    RecordingDialogs::FailOn("ShowActionDetailsDialog");
    QueueCommand(T::ShowDetails, 1, 0, 0);
    Run(T::TakeAction, 1);
    EXPECT_EQ(Sent(), (Strings{Taken(1)}));
}

// ---- The tick; dialogs stay postponed unless a test says otherwise ----

class Tick : public Dispatch {
protected:
    void SetUp() override {
        Dispatch::SetUp();
        initialized = true;
        m_postponedTo = At(3600);
    }
    static void Add(const std::string& children) {
        actions.clear();
        Handle(children);
        Calls();
    }
};

TEST_F(Tick, BeforeInitialisationItOnlyMovesMessagesAndCommands) {
    initialized = false;
    m_postponedTo = Instant();
    Receive(Doc(Action(1)));
    QueueCommand(T::DetailsClosed, 0, 0, 0);
    RunClientUITick();
    EXPECT_EQ(Calls(), (Strings{kUpdate, kShown, kShow, kEnable}));
}

TEST_F(Tick, RemindsEveryTickOnceThePostponementHasRunOutEvenInQuietMode) {
    struct Case { const char* what; std::int64_t postponedTo; std::string actions; bool quiet; Strings calls; };
    const Case cases[] = {
        {"ran out", -1, Action(1), false, {kHidden, kShow, kTimeouts}},
        {"runs out now", 0, Action(1), false, {kHidden, kTimeouts}},
        {"nothing pending", -1, "", false, {kHidden, kTimeouts}},
        // Quiet mode skips the passed deadline, not the reminder.
        {"quiet", -1, Forced(1, "Tue, 14 Nov 2023 22:00:00 +0000"), true, {kHidden, kShow, kTimeouts}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Add(c.actions);
        inQuietMode = c.quiet;
        m_postponedTo = At(c.postponedTo);
        for (int tick = 0; tick < 2; ++tick) {
            RunClientUITick();
            EXPECT_EQ(Calls(), c.calls);
        }
        EXPECT_TRUE(Sent().empty());
        EXPECT_EQ(actions.size(), c.actions.empty() ? 0u : 1u);
    }
}

TEST_F(Tick, ForcedDeadlines) {
    // A countdown that starts asks for attention on its first tick only.
    struct Case { const char* what; std::string action; Strings sent; IdList left; bool refreshed, alerted; };
    const Case cases[] = {
        {"passed", Forced(1, "Tue, 14 Nov 2023 22:13:19 +0000"), {Taken(1)}, {}, true, false},
        {"due now", Forced(1, "Tue, 14 Nov 2023 22:13:20 +0000"), {}, {1}, true, true},
        {"within five minutes", Forced(1, "Tue, 14 Nov 2023 22:18:19 +0000"), {}, {1}, true, true},
        {"five minutes away", Forced(1, "Tue, 14 Nov 2023 22:18:20 +0000"), {}, {1}, false, false},
        {"not forced", Action(1, "<Deadline>Tue, 14 Nov 2023 22:00:00 +0000</Deadline>"), {}, {1}, false, false},
        {"forced without deadline", Action(1, "<ForceRun>true</ForceRun>"), {}, {1}, false, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Add(c.action);
        for (int tick = 0; tick < 2; ++tick) {
            RunClientUITick();
            // A refresh every tick while the countdown runs; a report only once.
            Strings expected{kHidden, kTimeouts};
            if (c.refreshed && (tick == 0 || !c.left.empty())) expected.push_back(kUpdate);
            if (c.alerted && tick == 0) expected.push_back(kUrgent);
            EXPECT_EQ(Calls(), expected);
            EXPECT_EQ(Sent(), tick == 0 ? c.sent : Strings{});
            EXPECT_EQ(Ids(), c.left);
        }
    }
}

TEST_F(Tick, PassedDeadlinesAreReportedInListOrderAndTheWalkGoesOn) {
    const char* passed = "Tue, 14 Nov 2023 22:00:00 +0000";
    Add(Forced(1, passed) + Forced(2, passed) + Action(3) + Forced(4, passed));
    RunClientUITick();
    EXPECT_EQ(Sent(), (Strings{Taken(1), Taken(2), Taken(4)}));
    EXPECT_EQ(Ids(), (IdList{3}));
}

TEST_F(Tick, ADeadPipeEndsTheProgramBeforeAnythingElse) {
    UIMessageQueue in, out;
    UnixPipe pipe(in, out);
    pipe.Kill();
    clientPipe = &pipe;
    Receive(Doc(Action(1)));
    RunClientUITick();
    clientPipe = nullptr;
    EXPECT_EQ(observedExit.count, 1);
    EXPECT_EQ(observedExit.status, 0);
    EXPECT_EQ(observedExit.reason, "CLOSED");
    EXPECT_EQ(Calls(), (Strings{"DestroyApplicationContext()"}));
    EXPECT_TRUE(actions.empty());
}

// ---- The link's small pieces ----

TEST_F(Dispatch, OnlyTheFourBytesOpenOpenTheDialog) {
    // X hands over 20 data bytes; every literal here is at least five long.
    const std::pair<const char*, bool> cases[] = {
        {"open", true}, {"openly, please", true}, {"OPEN", false}, {"ope\0xxxxx", false}, {" open", false},
    };
    for (const auto& [data, open] : cases) {
        SCOPED_TRACE(data);
        HandleHiddenWindowMessage(data);
        ProcessMessagesFromUI();
        EXPECT_EQ(Calls(), open ? (Strings{kShow, kRaise}) : Strings{});
    }
}

TEST_F(Dispatch, SendErrorToClientQueuesTwoCopiesAndWaitsForTheWriter) {
    Strings taken;
    std::thread writer([&taken] {  // stands in for the pipe's writer thread, for ten seconds at most
        for (int polls = 0; taken.size() < 2 && polls < 1000; ++polls) {
            for (std::string& text : Sent()) taken.push_back(std::move(text));
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    });
    ClientUIErrorMessage error(ClientUIErrorMessage::FontError, "noFont");
    SendErrorToClient(error);
    EXPECT_TRUE(writeQ.IsEmpty());
    writer.join();
    EXPECT_EQ(taken, (Strings(2, ConvertToXML(error).Str())));
}

}  // namespace
