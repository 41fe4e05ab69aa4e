#include <gtest/gtest.h>

#include "tests/app/DispatchFixture.h"

namespace {

using Strings = std::vector<std::string>;
using IdList = std::vector<unsigned long long>;

const std::string kUpdate = "UpdateActionRequestDialog()";
const std::string kEnable = "EnableActionRequestDialog()";

// Commands run against actions 1 (plain), 2 (asks for confirmation) and 3 (plain).
class Commands : public DispatchFixture {
protected:
    void SetUp() override {
        DispatchFixture::SetUp();
        Receive(Doc(Action(1) + Action(2, "<PreActionMessage>Save first</PreActionMessage>") + Action(3)));
        ProcessMessagesFromClient();
        Calls();
    }
    static void Run(UICommandType type, unsigned long long id = 0, long minutes = 0, long long seconds = 0) {
        QueueCommand(type, id, minutes, seconds);
        ProcessMessagesFromUI();
    }
};

TEST_F(Commands, SingleActionRows) {
    struct Case {
        const char* what;
        UICommandType type;
        unsigned long long id;
        Strings sent;
        IdList left;
        Strings calls;
    };
    const Case cases[] = {
        {"take", UICommandType::TakeAction, 3, {Taken(3)}, {1, 2}, {kUpdate, kEnable}},
        {"take needing confirmation", UICommandType::TakeAction, 2, {}, {1, 2, 3}, {"ShowConfirmationRequestDialog(2)"}},
        {"take gone", UICommandType::TakeAction, 9, {}, {1, 2, 3}, {kEnable}},
        {"cancel", UICommandType::CancelAction, 2, {Taken(2, true)}, {1, 3}, {kUpdate, kEnable}},
        {"cancel gone", UICommandType::CancelAction, 9, {}, {1, 2, 3}, {kEnable}},
        {"accept single", UICommandType::ConfirmAccepted, 2, {Taken(2)}, {1, 3}, {kUpdate, kEnable}},
        {"accept gone", UICommandType::ConfirmAccepted, 9, {}, {1, 2, 3}, {kEnable}},
        {"decline", UICommandType::ConfirmDeclined, 2, {}, {1, 2, 3}, {kEnable}},
        {"details", UICommandType::ShowDetails, 3, {}, {1, 2, 3}, {"ShowActionDetailsDialog(3)"}},
        {"details closed", UICommandType::DetailsClosed, 0, {}, {1, 2, 3}, {kEnable}},
        {"quiet mode closed", UICommandType::QuietModeClosed, 0, {}, {1, 2, 3}, {kEnable}},
        {"open", UICommandType::OpenDialog, 0, {}, {1, 2, 3}, {"ShowActionRequestDialog(false,PT5M,true)"}},
        {"unknown type", static_cast<UICommandType>(42), 1, {}, {1, 2, 3}, {}},
        {"negative type", static_cast<UICommandType>(-1), 1, {}, {1, 2, 3}, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        SetUp();
        Run(c.type, c.id);
        EXPECT_EQ(Sent(), c.sent);
        EXPECT_EQ(Ids(), c.left);
        EXPECT_EQ(Calls(), c.calls);
        EXPECT_FALSE(takeAllPending);
    }
}

TEST_F(Commands, TakeAllWithoutConfirmationsReportsEveryAction) {
    RemoveAction(2);
    Run(UICommandType::TakeAll);
    EXPECT_EQ(Sent(), (Strings{Taken(1), Taken(3)}));
    EXPECT_TRUE(actions.empty());
    EXPECT_EQ(Calls(), (Strings{kUpdate, kEnable}));

    // With nothing pending it only refreshes and enables the dialog.
    Run(UICommandType::TakeAll);
    EXPECT_TRUE(Sent().empty());
    EXPECT_EQ(Calls(), (Strings{kUpdate, kEnable}));
}

TEST_F(Commands, TakeAllAcceptedReportsEveryActionInOrder) {
    Run(UICommandType::TakeAll);
    EXPECT_TRUE(Sent().empty());
    EXPECT_TRUE(takeAllPending);
    EXPECT_EQ(Calls(), (Strings{"ShowConfirmationRequestDialog(2)"}));

    Run(UICommandType::ConfirmAccepted, 2);
    EXPECT_EQ(Sent(), (Strings{Taken(1), Taken(2), Taken(3)}));
    EXPECT_TRUE(actions.empty());
    EXPECT_FALSE(takeAllPending);
    EXPECT_EQ(Calls(), (Strings{kUpdate, kEnable, kEnable}));
}

TEST_F(Commands, TakeAllStopsAtEachConfirmation) {
    Receive(Doc(Action(4, "<PreActionMessage>Again</PreActionMessage>")));
    ProcessMessagesFromClient();
    Run(UICommandType::TakeAll);
    Run(UICommandType::ConfirmAccepted, 2);
    EXPECT_TRUE(Sent().empty());
    EXPECT_TRUE(takeAllPending);
    Calls();
    Run(UICommandType::ConfirmAccepted, 4);
    EXPECT_EQ(Sent(), (Strings{Taken(1), Taken(2), Taken(3), Taken(4)}));
}

TEST_F(Commands, TakeAllDeclinedSendsNothingAndEndsTheSequence) {
    Run(UICommandType::TakeAll);
    Run(UICommandType::ConfirmDeclined, 2);
    EXPECT_TRUE(Sent().empty());
    EXPECT_EQ(Ids(), (IdList{1, 2, 3}));
    EXPECT_FALSE(takeAllPending);
    // A later confirmation is a single one again: it takes only its action.
    Run(UICommandType::ConfirmAccepted, 2);
    EXPECT_EQ(Sent(), (Strings{Taken(2)}));
    EXPECT_EQ(Ids(), (IdList{1, 3}));
}

TEST_F(Commands, TakeAllSurvivesTheListShrinkingUnderIt) {
    Run(UICommandType::TakeAll);
    Receive(Doc("<RemoveRequest><RemoveType>Action</RemoveType><ID>1</ID></RemoveRequest>"
                "<RemoveRequest><RemoveType>Action</RemoveType><ID>3</ID></RemoveRequest>"));
    ProcessMessagesFromClient();
    // The cursor now lies past the end: the walk is over.
    Run(UICommandType::ConfirmAccepted, 2);
    EXPECT_EQ(Sent(), (Strings{Taken(2)}));
    EXPECT_FALSE(takeAllPending);
}

TEST_F(Commands, SnoozeSendsTheReminderTimeAndTheInterval) {
    struct Case {
        long minutes;
        long long seconds;  // until the earliest deadline
        const char* remindTime;
        const char* interval;
        std::int64_t postponedBy;
        std::int64_t intervalSeconds;
    };
    const Case cases[] = {
        {2, 30, "Tue, 14 Nov 2023 22:15:20 +0000", "PT2M", 120, 120},
        {60, 0, "Tue, 14 Nov 2023 23:13:20 +0000", "PT1H", 3600, 3600},
        {0, 30, "Tue, 14 Nov 2023 22:13:50 +0000", "PT30S", 30, 30},
        // Counted back from a deadline an hour away: 15 minutes before it.
        {-15, 3600, "Tue, 14 Nov 2023 22:58:20 +0000", "-PT15M", 2700, -900},
        // A deadline two minutes away: five minutes before it has passed.
        {-5, 120, "Tue, 14 Nov 2023 22:10:20 +0000", "-PT5M", -180, -300},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.interval);
        Run(UICommandType::Snooze, 0, c.minutes, c.seconds);
        const std::string declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<UIToClient>\n";
        EXPECT_EQ(Sent(), (Strings{declaration + "\t<RemindTime>\n\t\t<TimeObject>" + c.remindTime +
                                       "</TimeObject>\n\t</RemindTime>\n</UIToClient>",
                                   declaration + "\t<RemindInterval>\n\t\t<TimeInterval>" + c.interval +
                                       "</TimeInterval>\n\t</RemindInterval>\n</UIToClient>"}));
        EXPECT_EQ(m_postponedTo, At(c.postponedBy));
        EXPECT_EQ(m_remindInterval, TimeInterval(c.intervalSeconds * kMicrosecondsPerSecond));
        EXPECT_TRUE(Calls().empty());
    }
}

TEST_F(Commands, SnoozeWithNothingPendingSendsNothing) {
    actions.clear();
    Run(UICommandType::Snooze, 0, 5, 0);
    EXPECT_TRUE(Sent().empty());
    EXPECT_EQ(m_postponedTo, Instant());
    EXPECT_EQ(m_remindInterval, TimeInterval(300 * kMicrosecondsPerSecond));
}

TEST_F(Commands, AFailingCommandIsDroppedAlone) {
    RecordingDialogs::FailOn("ShowActionDetailsDialog");
    QueueCommand(UICommandType::ShowDetails, 1, 0, 0);
    QueueCommand(UICommandType::TakeAction, 1, 0, 0);
    ProcessMessagesFromUI();
    EXPECT_EQ(Sent(), (Strings{Taken(1)}));
}

}  // namespace
