#include <gtest/gtest.h>

#include <chrono>
#include <memory>

#include "pipe/FiFoQueue.h"
#include "pipe/UIMessage.h"
#include "tests/pipe/PipeTestSupport.h"

namespace {

using namespace std::chrono_literals;

TEST(FiFoQueue, EmptyThrowsAndSpliceKeepsOrder) {
    FiFoQueue<int> a, b;
    EXPECT_THROW(a.Front(), FiFoQueueIsEmpty);
    a.Append(1);
    b.Append(2);
    a.Splice(b);
    b.Append(3);  // b's tail must not point into a any more
    EXPECT_EQ(a.TakeFront(), 1);
    EXPECT_EQ(a.TakeFront(), 2);
    EXPECT_THROW(a.TakeFront(), FiFoQueueIsEmpty);
    a.Append(4);  // the tail went with the last element
    EXPECT_EQ(a.Front(), 4);
    EXPECT_EQ(b.Front(), 3);
}

TEST(FiFoQueue, LongQueueIsDestroyedWithoutDeepRecursion) {
    FiFoQueue<int> queue;
    for (int i = 0; i < 1000000; ++i) queue.Append(i);
}

TEST(UIMessageQueue, AttachedDoorbellRingsOnEachMessage) {
    UIMessageQueue queue;
    auto bell = std::make_shared<Doorbell>();
    queue.SetDoorbell(bell);
    queue.WriteMessage(Message("x"));
    EXPECT_TRUE(bell->WaitFor(0ms));
    EXPECT_FALSE(bell->WaitFor(0ms));  // one ring, one wake-up
    queue.DetachDoorbell(std::make_shared<Doorbell>());  // not the attached one: no effect
    queue.WriteMessage(Message("y"));
    EXPECT_TRUE(bell->WaitFor(0ms));
    queue.DetachDoorbell(bell);
    queue.WriteMessage(Message("z"));
    EXPECT_FALSE(bell->WaitFor(0ms));
}

}  // namespace
