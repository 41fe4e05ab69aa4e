#include "base/time/TimeText.h"

#include <gtest/gtest.h>

#include <ctime>
#include <random>
#include <string>

namespace {

constexpr std::int64_t kSecond = 1000000;
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

TEST(TimeToText, EdgesOfTheForm) {
    struct Case { TimeObject time; const char* text; };
    const Case kCases[] = {
        {{Instant(kExample * kSecond), TimeZone()}, "Sun, 15 Nov 2026 00:16:00 +0000"},
        {{{15, June, 987}, {}, TimeZone()}, "Fri, 15 Jun 0987 00:00:00 +0000"},
        {{{31, December, 9999}, {23, 59, 59}, TimeZone(-14 * 3600)}, "Fri, 31 Dec 9999 23:59:59 -1400"},
        {{Instant(-1500000), TimeZone()}, "Wed, 31 Dec 1969 23:59:59 +0000"},
        {{Instant(0), TimeZone(-1800)}, "Wed, 31 Dec 1969 23:30:00 -0030"},
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
    EXPECT_THROW(FixedText<3>("abcd"), ConstDataCapacityExceeded);
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

TEST(TextToTime, GivenZoneConvertsOrSupplies) {
    const TimeObject converted = TextToTime("Sun, 15 Nov 2026 00:16:00 +0000", TimeZone(3600));
    EXPECT_EQ(converted.Time(), TimeOfDay(1, 16, 0));
    EXPECT_EQ(converted.Zone(), TimeZone(3600));
    EXPECT_EQ(converted.SecondsSinceEpoch(), kExample);

    const TimeObject supplied = TextToTime("15 Nov 2026 00:16:00", TimeZone(3600));
    EXPECT_EQ(supplied.Time(), TimeOfDay(0, 16, 0));
    EXPECT_EQ(supplied.SecondsSinceEpoch(), kExample - 3600);
}

TEST(DisplayTexts, AbbreviationsOutOfRangeAreMarked) {
    EXPECT_STREQ(DayOfWeekAbbreviation(DayOfWeek(7)), "???");
    EXPECT_STREQ(MonthAbbreviation(Month(0)), "???");
}

}  // namespace
