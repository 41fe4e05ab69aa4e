#include <gtest/gtest.h>

#include "app/Tick.h"
#include "pipe/UnixPipe.h"
#include "tests/app/DispatchFixture.h"

namespace {

using Strings = std::vector<std::string>;
using IdList = std::vector<unsigned long long>;

const std::string kShow = "ShowActionRequestDialog(false,PT5M,true)";
const std::string kUpdate = "UpdateActionRequestDialog()";
const std::string kHidden = "CreateHiddenWindowOnce()";
const std::string kTimeouts = "RemoveTimedoutMessageDialogs()";

// The pinned now is Tue, 14 Nov 2023 22:13:20 +0000; dialogs are never postponed unless a
// test says so (m_postponedTo lies in the future).
class Tick : public DispatchFixture {
protected:
    void SetUp() override {
        DispatchFixture::SetUp();
        initialized = true;
        m_postponedTo = At(3600);
    }
    void Add(const std::string& children) {
        Receive(Doc(children));
        ProcessMessagesFromClient();
        Calls();
    }
};

TEST_F(Tick, BeforeInitialisationItOnlyMovesMessagesAndCommands) {
    initialized = false;
    m_postponedTo = Instant();
    Receive(Doc(Action(1)));
    QueueCommand(UICommandType::DetailsClosed, 0, 0, 0);
    RunClientUITick();
    EXPECT_EQ(Calls(), (Strings{kUpdate, kShow, "EnableActionRequestDialog()"}));
}

TEST_F(Tick, RemindsWhileThePostponementHasRunOut) {
    struct Case {
        const char* what;
        std::int64_t postponedTo;
        bool withAction;
        Strings calls;
    };
    const Case cases[] = {
        {"ran out", -1, true, {kHidden, kShow, kTimeouts}},
        {"runs out now", 0, true, {kHidden, kTimeouts}},
        {"later", 60, true, {kHidden, kTimeouts}},
        {"nothing pending", -1, false, {kHidden, kTimeouts}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        actions.clear();
        if (c.withAction) Add(Action(1));
        m_postponedTo = At(c.postponedTo);
        RunClientUITick();
        EXPECT_EQ(Calls(), c.calls);
        // Again on the next tick while it holds.
        RunClientUITick();
        EXPECT_EQ(Calls(), c.calls);
    }
}

TEST_F(Tick, ForcedDeadlines) {
    struct Case {
        const char* what;
        std::string action;
        Strings sent;
        IdList left;
        bool refreshed;
    };
    const Case cases[] = {
        {"passed", ForcedAction(1, "Tue, 14 Nov 2023 22:13:19 +0000"), {Taken(1)}, {}, true},
        {"due now", ForcedAction(1, "Tue, 14 Nov 2023 22:13:20 +0000"), {}, {1}, true},
        {"within five minutes", ForcedAction(1, "Tue, 14 Nov 2023 22:18:19 +0000"), {}, {1}, true},
        {"five minutes away", ForcedAction(1, "Tue, 14 Nov 2023 22:18:20 +0000"), {}, {1}, false},
        {"not forced", Action(1, "<Deadline>Tue, 14 Nov 2023 22:00:00 +0000</Deadline>"), {}, {1}, false},
        {"forced without deadline", Action(1, "<ForceRun>true</ForceRun>"), {}, {1}, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        actions.clear();
        Add(c.action);
        for (int tick = 0; tick < 2; ++tick) {
            RunClientUITick();
            Strings expected{kHidden, kTimeouts};
            // A refresh every tick while the countdown runs; a report only once.
            if (c.refreshed && (tick == 0 || !c.left.empty())) expected.push_back(kUpdate);
            EXPECT_EQ(Calls(), expected);
            EXPECT_EQ(Sent(), tick == 0 ? c.sent : Strings{});
            EXPECT_EQ(Ids(), c.left);
        }
    }
}

TEST_F(Tick, PassedDeadlinesAreReportedInListOrderAndTheWalkGoesOn) {
    Add(ForcedAction(1, "Tue, 14 Nov 2023 22:00:00 +0000") + ForcedAction(2, "Tue, 14 Nov 2023 22:00:00 +0000") + Action(3) +
        ForcedAction(4, "Tue, 14 Nov 2023 21:00:00 +0000"));
    RunClientUITick();
    EXPECT_EQ(Sent(), (Strings{Taken(1), Taken(2), Taken(4)}));
    EXPECT_EQ(Ids(), (IdList{3}));
}

TEST_F(Tick, QuietModeSkipsDeadlinesButNotReminders) {
    Add(ForcedAction(1, "Tue, 14 Nov 2023 22:00:00 +0000"));
    inQuietMode = true;
    m_postponedTo = At(-60);
    RunClientUITick();
    EXPECT_EQ(Calls(), (Strings{kHidden, kShow, kTimeouts}));
    EXPECT_TRUE(Sent().empty());
    EXPECT_EQ(Ids(), (IdList{1}));
}

TEST_F(Tick, ADeadPipeEndsTheProgramBeforeAnythingElse) {
    UIMessageQueue in, out;
    UnixPipe* pipe = new UnixPipe(in, out);
    pipe->Kill();
    clientPipe = pipe;
    Receive(Doc(Action(1)));
    RunClientUITick();
    clientPipe = nullptr;
    delete pipe;
    EXPECT_EQ(observedExit.count, 1);
    EXPECT_EQ(observedExit.status, 0);
    EXPECT_EQ(observedExit.reason, "CLOSED");
    EXPECT_EQ(Calls(), (Strings{"DestroyApplicationContext()"}));
    EXPECT_TRUE(actions.empty());
}

}  // namespace
