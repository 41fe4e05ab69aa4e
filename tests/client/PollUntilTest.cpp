// The client's waits of any length end at their target: one poll waits at
// most a minute, so a longer wait polls again until the target has come. The
// clock is moved by hand, by the fake poll, as long as it was asked to wait.

#include <vector>

#include <gtest/gtest.h>

#include "client/UIProcess.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

struct FakeWaits {
    SteadyClock::time_point now{seconds(1000)};
    std::vector<int> polls;
    // The poll that reports something ready (1-based); 0: none does.
    std::size_t readyAt = 0;

    int Poll(int timeout) {
        polls.push_back(timeout);
        if (polls.size() == readyAt) return 1;
        now += milliseconds(timeout);
        return 0;
    }
};

TEST(PollUntil, WaitsOfAnyLengthEndAtTheirTarget) {
    struct Case {
        const char* name;
        SteadyClock::duration wait;
        std::vector<int> polls;
    };
    const Case cases[] = {
        {"59 s", seconds(59), {59000}},
        {"61 s", seconds(61), {60000, 1000}},
        {"300 s", seconds(300), {60000, 60000, 60000, 60000, 60000}},
        // Rounded up, not a busy loop of polls of 0.
        {"1.5 ms", std::chrono::microseconds(1500), {2}},
        {"already past", -seconds(1), {0}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        FakeWaits fake;
        const SteadyClock::time_point target = fake.now + c.wait;
        EXPECT_EQ(PollUntil(target, [&](int timeout) { return fake.Poll(timeout); }, [&] { return fake.now; }), 0);
        EXPECT_EQ(fake.polls, c.polls);
        EXPECT_GE(fake.now, target);
    }
}

TEST(PollUntil, SomethingReadyOrAnErrorEndsTheWaitEarly) {
    FakeWaits fake;
    fake.readyAt = 2;
    EXPECT_EQ(PollUntil(fake.now + seconds(300), [&](int timeout) { return fake.Poll(timeout); },
                        [&] { return fake.now; }),
              1);
    EXPECT_EQ(fake.polls, (std::vector<int>{60000, 60000}));

    int polls = 0;
    EXPECT_EQ(PollUntil(fake.now + seconds(300), [&](int) { return ++polls, -1; }, [&] { return fake.now; }), -1);
    EXPECT_EQ(polls, 1);
}

}  // namespace
