#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <unistd.h>

#include "tests/app/DispatchFixture.h"

namespace {

namespace fs = std::filesystem;

using Strings = std::vector<std::string>;
using IdList = std::vector<unsigned long long>;

const std::string kShow = "ShowActionRequestDialog(false,PT5M,true)";
const std::string kUpdate = "UpdateActionRequestDialog()";

class ClientMessages : public DispatchFixture {};

TEST_F(ClientMessages, ActionRequestIsAppendedAndShownEvenWhileSnoozed) {
    m_postponedTo = At(3600);
    Receive(Doc(Action(7) + Action(3)));
    Receive("<AnyRootAtAll>" + Action(7) + "</AnyRootAtAll>");
    ProcessMessagesFromClient();
    // Duplicate IDs are kept as two entries, in arrival order.
    EXPECT_EQ(Ids(), (IdList{7, 3, 7}));
    EXPECT_EQ(Calls(), (Strings{kUpdate, kShow, kUpdate, kShow, kUpdate, kShow}));
    EXPECT_TRUE(Sent().empty());
}

TEST_F(ClientMessages, UnknownElementsAndEmptyMessagesAreSkipped) {
    Receive("");
    Receive(Doc("<Unknown><ID>1</ID></Unknown>" + Action(2)));
    ProcessMessagesFromClient();
    EXPECT_EQ(Ids(), (IdList{2}));
}

TEST_F(ClientMessages, RemoveRequestByType) {
    struct Case {
        const char* type;  // null: no RemoveType element
        IdList left;
        Strings calls;
    };
    const Case cases[] = {
        {"Action", {5, 6}, {kUpdate}},
        {"All", {5, 6}, {kUpdate, "RemoveMessageDialog(5)"}},
        {"Message", {5, 5, 6}, {"RemoveMessageDialog(5)"}},
        {"Offer", {5, 5, 6}, {}},
        {"action", {5, 6}, {kUpdate, "RemoveMessageDialog(5)"}},
        {nullptr, {5, 6}, {kUpdate, "RemoveMessageDialog(5)"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.type ? c.type : "(none)");
        actions.clear();
        Receive(Doc(Action(5) + Action(5) + Action(6)));
        ProcessMessagesFromClient();
        Calls();
        const std::string type = c.type ? std::string("<RemoveType>") + c.type + "</RemoveType>" : "";
        Receive(Doc("<RemoveRequest>" + type + "<ID>5</ID></RemoveRequest>"));
        ProcessMessagesFromClient();
        EXPECT_EQ(Ids(), c.left);
        EXPECT_EQ(Calls(), c.calls);
    }
    EXPECT_TRUE(Sent().empty());
}

TEST_F(ClientMessages, MessageRequestOpensAMessageDialog) {
    Receive(Doc("<MessageRequest><Title>Done</Title><Message>m</Message><ID>12</ID></MessageRequest>"));
    ProcessMessagesFromClient();
    EXPECT_EQ(Calls(), (Strings{"ShowMessageDialog(12,Done)"}));
}

TEST_F(ClientMessages, QuietModeStartTurnsQuietModeOnAndCoversAShownDialog) {
    const std::string start = Doc(
        "<QuietModeStart><StartTime>Tue, 14 Nov 2023 22:13:20 +0000</StartTime>"
        "<EndTime>Tue, 14 Nov 2023 23:13:20 +0000</EndTime></QuietModeStart>");
    Receive(start);
    ProcessMessagesFromClient();
    EXPECT_TRUE(inQuietMode);
    EXPECT_EQ(Calls(), (Strings{"IsActionRequestDialogShown()"}));

    RecordingDialogs::SetActionDialogShown(true);
    Receive(start);
    ProcessMessagesFromClient();
    EXPECT_EQ(Calls(), (Strings{"IsActionRequestDialogShown()", "ShowQuietModeDialog(1700000000,1700003600)",
                                "DisableActionRequestDialog()"}));
}

TEST_F(ClientMessages, MalformedQuietModeStartStillTurnsQuietModeOn) {
    Receive(Doc("<QuietModeStart><StartTime>soon</StartTime></QuietModeStart>" + Action(1)));
    ProcessMessagesFromClient();
    EXPECT_TRUE(inQuietMode);
    EXPECT_TRUE(actions.empty());
    EXPECT_TRUE(Calls().empty());
}

TEST_F(ClientMessages, QuietModeEndTurnsQuietModeOffAndRestoresAShownDialog) {
    inQuietMode = true;
    Receive(Doc("<QuietModeEnd></QuietModeEnd>"));
    ProcessMessagesFromClient();
    EXPECT_FALSE(inQuietMode);
    EXPECT_EQ(Calls(), (Strings{"RemoveQuietModeDialog()", "IsActionRequestDialogShown()"}));

    inQuietMode = true;
    RecordingDialogs::SetActionDialogShown(true);
    Receive(Doc("<QuietModeEnd><Ignored>x</Ignored></QuietModeEnd>"));
    ProcessMessagesFromClient();
    EXPECT_FALSE(inQuietMode);
    EXPECT_EQ(Calls(), (Strings{"RemoveQuietModeDialog()", "IsActionRequestDialogShown()", kUpdate,
                                "EnableActionRequestDialog()"}));
}

TEST_F(ClientMessages, ABadMessageDropsTheRestOfItsBatchOnly) {
    const char* bad[] = {
        "not xml at all <",
        "<?xml version=\"1.0\"?>",  // no root element
        "   ",
        "<ClientToUI><ActionRequest><ID>twelve</ID></ActionRequest></ClientToUI>",
        "<ClientToUI><ActionRequest><ID>99999999999999999999999</ID></ActionRequest></ClientToUI>",
        "<ClientToUI><MessageRequest><Timeout>P1Y</Timeout></MessageRequest></ClientToUI>",
    };
    for (const char* text : bad) {
        SCOPED_TRACE(text);
        actions.clear();
        Receive(Doc(Action(1)));
        Receive(text);
        Receive(Doc(Action(2)));
        ProcessMessagesFromClient();
        EXPECT_EQ(Ids(), (IdList{1}));
        Receive(Doc(Action(3)));
        ProcessMessagesFromClient();
        EXPECT_EQ(Ids(), (IdList{1, 3}));
    }
}

TEST_F(ClientMessages, ADialogThatThrowsDropsTheRestOfTheBatch) {
    RecordingDialogs::FailOn("ShowMessageDialog");
    Receive(Doc("<MessageRequest><ID>1</ID></MessageRequest>" + Action(1)));
    Receive(Doc(Action(2)));
    ProcessMessagesFromClient();
    EXPECT_TRUE(actions.empty());
}

// Initialisation writes into a fresh directory under /tmp: never a path that
// could lead to "/" or to the real working directory.
class Initialisation : public DispatchFixture {
protected:
    void SetUp() override {
        DispatchFixture::SetUp();
        char pattern[] = "/tmp/zam-dispatch-XXXXXX";
        ASSERT_NE(::mkdtemp(pattern), nullptr);
        root_ = pattern;
    }
    void TearDown() override {
        if (root_.rfind("/tmp/zam-dispatch-", 0) == 0 && root_.size() > 18) fs::remove_all(root_);
        DispatchFixture::TearDown();
    }
    std::string Init(const std::string& base, const char* interval = "PT10M") const {
        return "<InitializationInfo><BaseDirectory>" + base + "</BaseDirectory><InitialUISettings><RemindInterval>" +
               interval + "</RemindInterval><AllowSnooze>false</AllowSnooze></InitialUISettings></InitializationInfo>";
    }
    std::string root_;
};

TEST_F(Initialisation, HoldsBackTheRestOfTheBatchAndLosesTheRestOfTheDocument) {
    Receive(Doc(Init(root_ + "/base") + Action(1)));
    Receive(Doc(Action(2)));
    ProcessMessagesFromClient();
    EXPECT_TRUE(initialized);
    EXPECT_TRUE(fs::is_directory(root_ + "/base"));
    EXPECT_EQ(m_remindInterval, TimeInterval(600 * kMicrosecondsPerSecond));
    EXPECT_TRUE(actions.empty());

    // The held-back message comes before anything that arrived since.
    Receive(Doc(Action(3)));
    ProcessMessagesFromClient();
    EXPECT_EQ(Ids(), (IdList{2}));
    EXPECT_EQ(Calls(), (Strings{kUpdate, "ShowActionRequestDialog(false,PT10M,false)"}));
    ProcessMessagesFromClient();
    EXPECT_EQ(Ids(), (IdList{2, 3}));
}

TEST_F(Initialisation, ASecondOneIsIgnored) {
    Receive(Doc(Init(root_ + "/first")));
    ProcessMessagesFromClient();
    ASSERT_TRUE(initialized);
    Receive(Doc(Init(root_ + "/second", "PT1H") + Action(4)));
    ProcessMessagesFromClient();
    EXPECT_FALSE(fs::exists(root_ + "/second"));
    EXPECT_EQ(m_remindInterval, TimeInterval(600 * kMicrosecondsPerSecond));
    EXPECT_EQ(Ids(), (IdList{4}));
}

TEST_F(Initialisation, AFailedOneLeavesTheProgramWaiting) {
    // Both fail inside the fresh directory: an unreadable interval before
    // anything is written, a file without a name while writing.
    const std::string failing[] = {
        Init(root_ + "/base", "PT"),
        "<InitializationInfo><BaseDirectory>" + root_ +
            "/base</BaseDirectory><SupportFiles><FileName></FileName><Content>YQ==</Content></SupportFiles>"
            "</InitializationInfo>",
    };
    for (const std::string& init : failing) {
        SCOPED_TRACE(init);
        Receive(Doc(init));
        Receive(Doc(Action(1)));
        ProcessMessagesFromClient();
        EXPECT_FALSE(initialized);
        EXPECT_TRUE(actions.empty());
    }
    Receive(Doc(Init(root_ + "/base")));
    ProcessMessagesFromClient();
    EXPECT_TRUE(initialized);
}

}  // namespace
