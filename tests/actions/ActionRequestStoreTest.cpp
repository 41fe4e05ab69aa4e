#include "actions/ActionRequestStore.h"

#include <gtest/gtest.h>

#include "base/time/Clock.h"

namespace {

// 2026-11-15 00:16:00 UTC.
const Instant kNow(1763165760LL * 1000000);
TimeInterval Minutes(long long n) { return TimeInterval(n * 60 * 1000000); }

ActionRequest Action(unsigned long long id, bool forceRun, NullOr<Instant> deadline,
                     const char* title = "") {
    ActionRequest action;
    action.id = id;
    action.forceRun = forceRun;
    action.title = title;
    if (deadline) {
        action.deadline = TimeObject(deadline.Get(), TimeZone(3600));
    }
    return action;
}

class ActionRequestStoreTest : public ::testing::Test {
protected:
    ScopedClockOverride clock{kNow};
    ActionRequestStore store;
};

TEST_F(ActionRequestStoreTest, ForcedDeadlinesAreGivenFiveMinutesNotice) {
    struct Case {
        const char* what;
        bool forceRun;
        NullOr<Instant> deadline;
        NullOr<Instant> shown;
    };
    const Instant soon = kNow + Minutes(5);
    const Case cases[] = {
        {"forced, already past", true, kNow - Minutes(1), soon},
        {"forced, exactly five minutes away", true, soon, soon},
        {"forced, ten minutes away", true, kNow + Minutes(10), kNow + Minutes(10)},
        {"not forced, past", false, kNow - Minutes(1), kNow - Minutes(1)},
        {"forced, no deadline", true, NullOr<Instant>(), NullOr<Instant>()},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        ActionRequestStore fresh;
        fresh.UpdateActions({Action(1, c.forceRun, c.deadline)});
        EXPECT_EQ(fresh.GetAction(1).Deadline(), c.shown);
    }
}

TEST_F(ActionRequestStoreTest, MovedDeadlineIsUniversalTimeLaterSameIdWinsAndUnknownIdThrows) {
    store.UpdateActions({Action(1, true, kNow - Minutes(1))});
    EXPECT_EQ(store.GetAction(1).deadline->Zone().Seconds(), 0);
    store.UpdateActions({Action(7, false, kNow, "first"), Action(7, false, NullOr<Instant>(), "second")});
    EXPECT_EQ(store.GetAction(7), Action(7, false, NullOr<Instant>(), "second"));
    EXPECT_THROW(store.GetAction(2), NoSuchActionRequestID);
}

}  // namespace
