#include "pipe/PortableThread.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include <atomic>
#include <stdexcept>

#include "tests/pipe/PipeTestSupport.h"

namespace {

std::atomic<int> runs{0};
std::atomic<std::size_t> stackSeen{0};

void CountRunThenThrow(void*) {
    ++runs;
    throw std::runtime_error("escapes the thread function");
}

void RecordStack(void*) {
    pthread_attr_t attributes;
    std::size_t size = 0;
    if (pthread_getattr_np(pthread_self(), &attributes) == 0) {
        pthread_attr_getstacksize(&attributes, &size);
        pthread_attr_destroy(&attributes);
    }
    stackSeen = size;
}

bool AllThreadObjectsFreed() {
    return WaitUntil([] { return PortableThread::LiveCount() == 0; });
}

TEST(PortableThread, OwnedThreadRunsOnceAndWaitsForAbandon) {
    PortableThread* thread = CreatePortableThreadSuspended(&CountRunThenThrow, nullptr);
    ASSERT_TRUE(thread->Start());
    EXPECT_TRUE(thread->Start());
    ASSERT_TRUE(WaitUntil([&] { return thread->Completed(); }));
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(PortableThread::LiveCount(), 1);  // still the owner's to look at
    thread->Abandon();                          // now the thread frees it
    EXPECT_TRUE(AllThreadObjectsFreed());
    ASSERT_TRUE(RunPortableThread(&CountRunThenThrow, nullptr));
    EXPECT_TRUE(WaitUntil([] { return runs == 2; }));
    EXPECT_TRUE(AllThreadObjectsFreed());
}

TEST(PortableThread, StackIsRaisedToMinimumButNeverLowered) {
    pthread_attr_t saved;
    ASSERT_EQ(pthread_getattr_default_np(&saved), 0);
    const std::size_t processDefaults[] = {256 * 1024, 2 * 1024 * 1024};
    for (std::size_t processDefault : processDefaults) {
        SCOPED_TRACE(processDefault);
        pthread_attr_t defaults;
        pthread_attr_init(&defaults);
        pthread_attr_setstacksize(&defaults, processDefault);
        ASSERT_EQ(pthread_setattr_default_np(&defaults), 0);
        pthread_attr_destroy(&defaults);
        stackSeen = 0;
        ASSERT_TRUE(CreatePortableThread(&RecordStack, nullptr));
        ASSERT_TRUE(WaitUntil([] { return stackSeen != 0; }));
        EXPECT_GE(stackSeen.load(), std::max(processDefault, kMinimumThreadStack));
    }
    pthread_setattr_default_np(&saved);
    pthread_attr_destroy(&saved);
    EXPECT_TRUE(AllThreadObjectsFreed());
}

}  // namespace
