#include "text/FormattedDeadline.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace {

constexpr std::int64_t kSecond = 1000000;
constexpr std::int64_t kMinute = 60 * kSecond;
constexpr std::int64_t kHour = 60 * kMinute;
constexpr std::int64_t kDay = 24 * kHour;

TEST(FormattedDeadline, RoundsAtEachBoundary) {
    struct Case { std::int64_t remaining; bool forceRun; bool fromNow; const char* text; };
    const Case kCases[] = {
        // Passed deadlines: never wrapped.
        {-1, false, true, "Overdue"},
        {-kDay, true, false, "0 seconds"},
        {-1, true, true, "Running..."},
        // The last five minutes: "Now", or a countdown for an action that runs by itself.
        {0, false, true, "Now"},
        {5 * kMinute, false, false, "Now"},
        {0, true, true, "0 seconds from now"},
        {kSecond, true, false, "1 second"},
        {kMinute - 1, true, false, "59 seconds"},
        {kMinute, true, false, "1 minute, 0 seconds"},
        {kMinute + kSecond, true, false, "1 minute, 1 second"},
        {2 * kMinute + kSecond, true, false, "2 minutes, 1 second"},
        {5 * kMinute, true, false, "5 minutes, 0 seconds"},
        // Minutes are truncated and always plural.
        {5 * kMinute + 1, true, false, "5 minutes"},
        // Hours and days round to nearest, exactly half rounding down.
        {kHour + 1, false, false, "1 hour"},
        {kHour + 30 * kMinute, false, false, "1 hour"},
        {kHour + 30 * kMinute + 1, false, false, "2 hours"},
        {kDay, true, true, "24 hours from now"},
        {kDay + 1, false, false, "1 day"},
        {kDay + 12 * kHour, false, false, "1 day"},
        {kDay + 12 * kHour + 1, false, true, "2 days from now"},
        {std::numeric_limits<std::int64_t>::max(), false, false, "106751991 days"},
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(::testing::Message() << c.remaining << " forceRun " << c.forceRun << " fromNow " << c.fromNow);
        EXPECT_EQ(FormattedDeadline(TimeInterval(c.remaining), c.forceRun, c.fromNow).Str(), c.text);
    }
}

TEST(FormattedDeadline, CountsFromNow) {
    // The far ends of time saturate instead of wrapping round.
    const Instant first(std::numeric_limits<std::int64_t>::min()), last(std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(FormattedDeadline(last, first, false, false).Str(), "106751991 days");
    EXPECT_EQ(FormattedDeadline(first, last, true, true).Str(), "Running...");
}

}  // namespace
