#include <gtest/gtest.h>

#include <ctime>
#include <random>
#include <string>

#include "base/time/Clock.h"
#include "base/time/DateRecord.h"
#include "base/time/TimeErrors.h"
#include "base/time/TimeObject.h"
#include "base/time/TimeText.h"
#include "base/time/TimeZone.h"
#include "base/time/XMLTime.h"
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

constexpr std::int64_t kExample = 1794701760;  // Sun, 15 Nov 2026 00:16:00 UTC

// The C library writes the same form with "%a, %d %b %Y %H:%M:%S %z" in the
// "C" locale (the tests never change the locale); %z prints tm_gmtoff.
std::string Strftime(std::int64_t seconds, std::int32_t offset) {
    const std::time_t civil = static_cast<std::time_t>(seconds + offset);
    std::tm tm{};
    gmtime_r(&civil, &tm);
    tm.tm_gmtoff = offset;
    char text[64];
    const std::size_t size = std::strftime(text, sizeof text, "%a, %d %b %Y %H:%M:%S %z", &tm);
    return std::string(text, size);
}

TEST(TimeToText, AgreesWithStrftimeAndReadsBack) {
    std::mt19937_64 random(5);
    std::uniform_int_distribution<std::int64_t> seconds(-30610137600, 253402128000);  // years 1000 to 9999
    std::uniform_int_distribution<std::int32_t> minutes(-14 * 60, 14 * 60);
    for (int i = 0; i < 10000; ++i) {
        const std::int64_t s = seconds(random);
        const std::int32_t offset = minutes(random) * 60;
        const std::int64_t micros = s * kSecond + static_cast<std::int64_t>(random() % kSecond);
        // The fraction is cut toward zero, so a negative instant rounds up to its second.
        const TimeObject time{Instant(micros), TimeZone(offset)};
        const AutoUString<UTF8> text = TimeToText(time);
        ASSERT_EQ(text.View(), Strftime(micros / kSecond, offset)) << micros;
        const TimeObject back = TextToTime(text);
        ASSERT_EQ(back, time) << text.View();
        ASSERT_EQ(back.Zone(), time.Zone()) << text.View();
    }
}

// Beyond the random range: a year below 1000 and a zone of more than 14 hours.
TEST(TimeToText, EdgesOfTheForm) {
    struct Case { TimeObject time; const char* text; };
    const Case kCases[] = {
        {{{15, June, 987}, {}, TimeZone()}, "Fri, 15 Jun 0987 00:00:00 +0000"},
        {{Instant(0), TimeZone(99 * 3600 + 59 * 60)}, "Mon, 05 Jan 1970 03:59:00 +9959"},
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(TimeToText(c.time).View(), c.text);
        EXPECT_EQ(TextToTime(c.text), c.time);
        EXPECT_EQ(TextToTime(c.text).Zone(), c.time.Zone());
    }
    // One character too many for the 31-character form.
    EXPECT_THROW(TimeToText(TimeObject({1, January, 10000}, {}, TimeZone())), DataOverflow);
}

TEST(TextToTime, AcceptedSpellings) {
    struct Case { const char* text; std::int64_t seconds; std::int32_t zone; };
    const Case kCases[] = {
        {"Sun, 15 Nov 2026 00:16:00 +0000", kExample, 0},
        {"15 Nov 2026 00:16:00 +0000", kExample, 0},
        {"Thu, 5 Nov 2026 00:16:00 GMT", kExample - 10 * 86400, 0},
        {"  sun ,  15   nov\t2026 00:16:00   z  ", kExample, 0},
        {"Sun, 15 NOV 2026 00:16 UTC", kExample, 0},
        {"Sun, 15 Nov 2026 02:16:00 +0200", kExample, 7200},
        {"Sun, 15 Nov 2026 02:16:00 +02:00", kExample, 7200},
        {"Mon, 15 Nov 2026 00:16:00 +0000", kExample, 0},  // a wrong day name is ignored
        {"Sun, 15 Nov 2026 00:16:00 +9959", kExample - 99 * 3600 - 59 * 60, 99 * 3600 + 59 * 60},
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.text);
        const TimeObject time = TextToTime(c.text);
        EXPECT_EQ(time.SecondsSinceEpoch(), c.seconds);
        EXPECT_EQ(time.Zone().Seconds(), c.zone);
    }
}

TEST(TextToTime, RejectedTexts) {
    const char* const kOutsideTheGrammar[] = {
        "", "Sun 15 Nov 2026 00:16:00 +0000", "15 November 2026 00:16:00 +0000", "15 Nov 26 00:16:00 +0000",
        "15Nov 2026 00:16:00 +0000", "15 Nov 2026 00:16:00+0000", "15 Nov 2026 00:16:00 +000",
        "15 Nov 2026 00:16:00 +0060", "15 Nov 2026 00:16:00 EST", "15 Nov 2026 00:16:00 +0000 x",
    };
    for (const char* text : kOutsideTheGrammar) EXPECT_THROW(TextToTime(text), ParsingFailure) << text;
    EXPECT_THROW(TextToTime("Sun, 15 Nov 2026 00:16:00"), NoTimeZone);
    EXPECT_THROW(TextToTime("31 Feb 2026 00:16:00 +0000"), NoSuchDate);
    EXPECT_THROW(TextToTime("31 Feb 2026 00:16:00"), NoSuchDate);  // judged before the zone
    EXPECT_THROW(TextToTime("15 Nov 2026 23:59:60 +0000"), NoSuchTimeOfDay);
}

TEST(XMLDuration, CanonicalTextsBothWays) {
    struct Case { std::int64_t micros; const char* text; };
    const Case kCases[] = {
        {0, "PT0S"}, {90 * kSecond, "PT1M30S"}, {86400 * kSecond + 1, "P1DT0.000001S"},
        {-3600 * kSecond, "-PT1H"}, {2 * 86400 * kSecond, "P2D"}, {3601 * kSecond, "PT1H1S"},
        {1500000, "PT1.500000S"}, {INT64_MAX, "P106751991DT4H54.775807S"},
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(TimeIntervalToXMLDuration(TimeInterval(c.micros)).View(), c.text);
        EXPECT_EQ(XMLDurationToTimeInterval(c.text), TimeInterval(c.micros));
    }
    // Only written: its magnitude is one past the reader's limit.
    EXPECT_EQ(TimeIntervalToXMLDuration(TimeInterval(INT64_MIN)).View(), "-P106751991DT4H54.775808S");
    EXPECT_EQ(XMLDurationToTimeInterval("PT0001S"), TimeInterval(kSecond));
    EXPECT_EQ(XMLDurationToTimeInterval("P1DT2H3M4.05S"), TimeInterval(93784 * kSecond + 50000));
    EXPECT_EQ(XMLDurationToTimeInterval("PT9223372036854S"), TimeInterval(9223372036854 * kSecond));
    EXPECT_EQ(XMLDurationToTimeInterval("P106751991DT4H0M54.775807S"), TimeInterval(INT64_MAX));
    EXPECT_EQ(XMLDurationToTimeInterval("-P106751991DT4H0M54.775807S"), TimeInterval(-INT64_MAX));
}

// Outside the grammar, finer than a microsecond or beyond the range: refused
// (the record is refused; the message text reaches no one).
TEST(XMLDuration, RefusedTexts) {
    const char* const kRefused[] = {
        "", "P", "PT", "P1DT", "P1Y", "P1M", "PT1H1", "1D", "+P1D", "P-1D", "PT1S1M", "PT1H1H", "PT.5S", "PT1.S",
        "PT1.5M", "PT1S ", "P1DT1D", "PTT1S", "PT1.1234567S", "PT9223372036855S", "P106751991DT4H0M54.775808S",
        "-P106751991DT4H0M54.775808S", "PT9223372036854775808S", "P99999999999999999999D", "P106751992D",
    };
    for (const char* text : kRefused) EXPECT_THROW(XMLDurationToTimeInterval(text), ExceptionPL) << text;
}

TEST(XMLDuration, RoundTripsEveryMagnitude) {
    std::mt19937_64 random(3);
    for (int i = 0; i < 5000; ++i) {
        // Spread over all magnitudes rather than mostly huge values.
        const std::int64_t micros = static_cast<std::int64_t>(random()) >> (random() % 64);
        const AutoUString<UTF8> text = TimeIntervalToXMLDuration(TimeInterval(micros));
        ASSERT_EQ(XMLDurationToTimeInterval(text), TimeInterval(micros)) << text.View();
    }
}

}  // namespace
