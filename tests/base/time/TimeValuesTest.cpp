#include "base/time/Clock.h"
#include "base/time/DateRecord.h"
#include "base/time/TimeErrors.h"
#include "base/time/TimeObject.h"
#include "base/time/TimeZone.h"

#include <gtest/gtest.h>

#include <ctime>
#include <random>

#include "tests/base/time/ScopedTZ.h"

namespace {

constexpr std::int64_t kSecond = 1000000;

TEST(DateRecord, ValidityAbsoluteDayAndWeekday) {
    struct Case { DateRecord date; bool valid; std::int64_t absoluteDay; DayOfWeek weekday; };
    const Case kCases[] = {
        {{1, January, 1}, true, 0, Monday},
        {{31, December, 0}, true, -1, Sunday},
        {{29, February, 2000}, true, 730178, Tuesday},
        {{29, February, 1900}, false, 693654, Thursday},  // rolls over to 1 March
        {{31, April, 2026}, false, 739736, Friday},
        {{0, May, 2026}, false, 739735, Thursday},
        {{1, Month(13), 2025}, false, 739616, Thursday},  // month 13 is January of the next year
        {{1, Month(0), 2026}, false, 739585, Monday},     // month 0 is December of the year before
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(std::to_string(c.date.year) + "-" + std::to_string(c.date.month) + "-" + std::to_string(c.date.day));
        EXPECT_EQ(c.date.IsValid(), c.valid);
        EXPECT_EQ(c.date.AbsoluteDay(), c.absoluteDay);
        EXPECT_EQ(c.date.DayOfWeek(), c.weekday);
    }
}

// The C library's calendar is the oracle for days a few millennia either way.
TEST(DateRecord, AgreesWithGmtimeOnRandomDays) {
    std::mt19937_64 random(7);
    std::uniform_int_distribution<std::int64_t> days(-719162, 2932896);  // 0001-01-01 .. 9999-12-31
    for (int i = 0; i < 20000; ++i) {
        const std::int64_t day = days(random);
        const std::time_t t = static_cast<std::time_t>(day * 86400);
        std::tm tm{};
        ASSERT_NE(gmtime_r(&t, &tm), nullptr);
        const DateRecord date = DateRecord::FromAbsoluteDay(day + DateRecord::kAbsoluteDayOfEpoch);
        SCOPED_TRACE(day);
        ASSERT_EQ(date, DateRecord(tm.tm_mday, Month(tm.tm_mon + 1), tm.tm_year + 1900));
        ASSERT_EQ(date.DayOfWeek(), tm.tm_wday);
        ASSERT_EQ(date.AbsoluteDay() - DateRecord::kAbsoluteDayOfEpoch, day);
    }
}

TEST(DateRecord, DayArithmetic) {
    EXPECT_EQ(DateRecord(28, February, 2024) + 1, DateRecord(29, February, 2024));
    EXPECT_EQ(DateRecord(28, February, 2023) + 1, DateRecord(1, March, 2023));
    EXPECT_EQ(DateRecord(1, January, 2027) - DateRecord(1, January, 2026), 365);
    EXPECT_EQ(DateRecord(31, April, 2026) + 0, DateRecord(1, May, 2026));
    EXPECT_THROW(DateRecord(1, January, 0) - 1, InvalidDateTimeNegativeYear);
    EXPECT_THROW(DateRecord(31, December, 4294967295u) + 1, NoSuchDate);
    EXPECT_THROW(DateRecord(1, January, 2000) + INT64_MAX, NoSuchDate);
    EXPECT_THROW(DateRecord(1, January, 2000) - INT64_MIN, NoSuchDate);
}

TEST(TimeOfDay, ArithmeticWrapsRoundMidnight) {
    EXPECT_EQ(TimeOfDay(23, 59, 59) += 1, TimeOfDay(0, 0, 0));
    EXPECT_EQ(TimeOfDay(0, 0, 30) -= 31, TimeOfDay(23, 59, 59));
    EXPECT_EQ(TimeOfDay(12, 0, 0) += 5 * 86400 + 61, TimeOfDay(12, 1, 1));
}

TEST(TimeObject, ZonesMoveFieldsButNotTheInstant) {
    const Instant instant(1367402400 * kSecond);  // 2013-05-01 10:00:00 UTC
    TimeObject t(instant, TimeZone(2 * 3600));
    EXPECT_EQ(t.Time(), TimeOfDay(12, 0, 0));
    EXPECT_EQ(Instant(t), instant);

    t.SetTimeZone(TimeZone(-11 * 3600));
    EXPECT_EQ(t.Date(), DateRecord(30, April, 2013));
    EXPECT_EQ(t.Time(), TimeOfDay(23, 0, 0));
    EXPECT_EQ(Instant(t), instant);
    EXPECT_EQ(t, TimeObject(instant, TimeZone()));

    TimeObject later = t;
    later.AddSeconds(3600);
    EXPECT_LT(t, later);
    EXPECT_EQ(later.Date(), DateRecord(1, May, 2013));
    EXPECT_EQ(Instant(later) - instant, TimeInterval(3600 * kSecond));

    const TimeObject farFuture({1, January, 300000}, {}, TimeZone());
    EXPECT_THROW(Instant{farFuture}, NoSuchDate);
    EXPECT_THROW(TimeObject(Instant(INT64_MIN), TimeZone()), InvalidDateTimeNegativeYear);
    EXPECT_LT(later, farFuture);  // comparison still works past the range of Instant
}

TEST(Instant, ArithmeticSaturatesAtTheLimits) {
    EXPECT_EQ(Instant(INT64_MAX - 5) + TimeInterval(10), Instant(INT64_MAX));
    EXPECT_EQ(Instant(INT64_MIN + 5) - TimeInterval(10), Instant(INT64_MIN));
    EXPECT_EQ(Instant(INT64_MIN) - Instant(1), TimeInterval(INT64_MIN));
    EXPECT_EQ(-TimeInterval(INT64_MIN), TimeInterval(INT64_MAX));
}

TEST(Clock, OverrideIsWholeSecondsAndNests) {
    ScopedClockOverride outer(Instant(1700000000 * kSecond + 999999));
    {
        ScopedClockOverride inner(Instant(-kSecond / 2));
        EXPECT_EQ(Instant::Now(), Instant(-kSecond));  // rounded down, like the clock
    }
    EXPECT_EQ(Instant::Now(), Instant(1700000000 * kSecond));
}

// The offset of the current moment serves every instant, also one in winter.
TEST(TimeZone, LocalIsTheCurrentOffsetForEveryInstant) {
    ScopedTZ tz("CET-1CEST,M3.5.0,M10.5.0/3");
    const Instant summer(1783159200 * kSecond);  // 2026-07-04 10:00:00 UTC
    const Instant winter(1768384800 * kSecond);  // 2026-01-14 10:00:00 UTC
    {
        ScopedClockOverride clock(summer);
        EXPECT_EQ(TimeZone::Local().Seconds(), 7200);
        EXPECT_EQ(TimeObject(winter, TimeZone::Local()).Time(), TimeOfDay(12, 0, 0));
    }
    ScopedClockOverride clock(winter);
    EXPECT_EQ(TimeZone::Local().Seconds(), 3600);
    EXPECT_EQ(TimeObject(summer, TimeZone::Local()).Time(), TimeOfDay(11, 0, 0));
}

}  // namespace
