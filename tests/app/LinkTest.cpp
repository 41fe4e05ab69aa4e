#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "app/OpenRequest.h"
#include "tests/app/DispatchFixture.h"

namespace {

TEST(QueueCommand, KeepsTheFourValuesAndOnlyTheLow32BitsOfTheSeconds) {
    QueueCommand(UICommandType::Snooze, 0x123456789ull, -15, 0x100000010ll);
    QueueCommand(UICommandType::Snooze, 1, 0, -1);
    FiFoQueue<std::unique_ptr<UICommand>> queued;
    uiCommandQ.ReadMessages(queued);
    ASSERT_EQ(queued.Size(), 2u);
    const std::unique_ptr<UICommand> first = queued.TakeFront();
    EXPECT_EQ(first->type, UICommandType::Snooze);
    EXPECT_EQ(first->id, 0x123456789ull);
    EXPECT_EQ(first->minutes, -15);
    EXPECT_EQ(first->seconds, 16u);
    EXPECT_EQ(queued.TakeFront()->seconds, 0xFFFFFFFFu);
}

TEST(OpenRequest, OnlyTheFourBytesOpenCount) {
    struct Case {
        const char data[20];
        bool open;
    };
    const Case cases[] = {
        {"open", true}, {"openly, please", true}, {"OPEN", false}, {"ope", false}, {" open", false}, {"", false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.data);
        EXPECT_EQ(IsOpenRequest(c.data), c.open);
        HandleHiddenWindowMessage(c.data);
        FiFoQueue<std::unique_ptr<UICommand>> queued;
        uiCommandQ.ReadMessages(queued);
        ASSERT_EQ(queued.Size(), c.open ? 1u : 0u);
        if (c.open) {
            EXPECT_EQ(queued.Front()->type, UICommandType::OpenDialog);
        }
    }
}

class Link : public DispatchFixture {};

TEST_F(Link, ExitCleanupDestroysTheApplicationContextFirst) {
    ExitCleanup(255, "XError: BadWindow");
    EXPECT_EQ(Calls(), (std::vector<std::string>{"DestroyApplicationContext()"}));
    EXPECT_EQ(observedExit.count, 1);
    EXPECT_EQ(observedExit.status, 255);
}

TEST_F(Link, SendErrorToClientQueuesTwoCopiesAndWaitsForTheWriter) {
    std::vector<std::string> taken;
    std::thread writer([&taken] {
        // Stands in for the pipe's writer thread: takes both copies at once.
        while (taken.size() < 2) {
            for (std::string& text : Sent()) taken.push_back(std::move(text));
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    });
    ClientUIErrorMessage error(ClientUIErrorMessage::FontError, "noFont");
    SendErrorToClient(error);
    EXPECT_TRUE(writeQ.IsEmpty());
    writer.join();
    const std::string document =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<ClientToUI>\n\t<ClientUIErrorMessage>\n\t\t<DebugString>noFont"
        "</DebugString>\n\t\t<ErrorCode>1</ErrorCode>\n\t</ClientUIErrorMessage>\n</ClientToUI>";
    EXPECT_EQ(taken, (std::vector<std::string>{document, document}));
}

}  // namespace
