#include "base/time/XMLTime.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "base/time/Clock.h"
#include "tests/base/time/ScopedTZ.h"

namespace {

constexpr std::int64_t kSecond = 1000000;
constexpr std::int64_t kMay1st = 1367402400 * kSecond;  // 2013-05-01 10:00:00 UTC

// Local time is three hours east of UTC all year, and the clock is pinned.
class XMLDateTime : public ::testing::Test {
protected:
    ScopedTZ tz_{"<+03>-3"};
    ScopedClockOverride clock_{Instant(kMay1st)};
};

TEST_F(XMLDateTime, Reading) {
    struct Case { const char* text; std::int64_t micros; };
    const Case kCases[] = {
        {"2013-05-01T10:00:00Z", kMay1st},
        {"2013-05-01T10:00:00+00:00", kMay1st},
        {"2013-05-01T10:00:00-00:00", kMay1st},
        {"2013-05-01T12:00:00+02:00", kMay1st},
        {"2013-05-01T13:00:00", kMay1st},       // no zone: local
        {"2013-05-01T13:00:00+0200", kMay1st},  // not six characters: local
        {"2013-05-01T10:00:00.5Z", kMay1st + 500000},
        {"2013-05-01T10:00:00.1234569Z", kMay1st + 123456},  // dropped, not rounded
        {"2013/05/01 10-00-00Z", kMay1st},                   // separators are not checked
        {"2013-05-01T10:00:60Z", kMay1st + 60 * kSecond},
        {"1969-12-31T23:59:59Z", -kSecond},
    };
    for (const Case& c : kCases) EXPECT_EQ(XMLDateTimeToInstant(c.text), Instant(c.micros)) << c.text;

    const char* const kInvalid[] = {
        "2013-13-01T10:00:00Z", "2013-05-01", "2O13-05-01T10:00:00Z", "2013-05-01T10:00:00+02:0x",
        "2013-05-01T10:00:00x-0200",  // six characters, but no sign first
    };
    for (const char* text : kInvalid) EXPECT_THROW(XMLDateTimeToInstant(text), InvalidDateTimeString) << text;
    EXPECT_THROW(XMLDateTimeToInstant("-2013-05-01T10:00:00Z"), InvalidDateTimeNegativeYear);
}

TEST_F(XMLDateTime, WritingUsesTheLocalOffset) {
    struct Case { std::int64_t micros; const char* text; };
    const Case kCases[] = {
        {kMay1st, "2013-05-01T13:00:00+03:00"},
        {kMay1st + 999999, "2013-05-01T13:00:00+03:00"},  // the fraction is lost
        {-31006195200 * kSecond, "0987-06-15T03:00:00+03:00"},
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(InstantToXMLDateTime(Instant(c.micros)).View(), c.text);
    }
    ScopedTZ west("<-0530>5:30");
    EXPECT_EQ(InstantToXMLDateTime(Instant(kMay1st)).View(), "2013-05-01T04:30:00-05:30");
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

TEST(XMLDuration, ReadingErrorsCarryTheirMessages) {
    const std::string general = "Could not convert XMLDuration to TimeInterval";
    const std::string precision =
        "Could not convert XMLDuration to TimeInterval: cannot handle more than microsecond precision.";
    const std::string overflow = "Could not convert XMLDuration to TimeInterval due to integer overflow.";
    struct Case { const char* text; const std::string& message; };
    const Case kCases[] = {
        {"", general}, {"P", general}, {"PT", general}, {"P1DT", general}, {"P1Y", general},
        {"P1M", general}, {"PT1H1", general}, {"1D", general}, {"+P1D", general}, {"P-1D", general},
        {"PT1S1M", general}, {"PT1H1H", general}, {"PT.5S", general}, {"PT1.S", general},
        {"PT1.5M", general}, {"PT1S ", general}, {"P1DT1D", general}, {"PTT1S", general},
        {"PT1.1234567S", precision},
        {"PT9223372036855S", overflow}, {"P106751991DT4H0M54.775808S", overflow},
        {"-P106751991DT4H0M54.775808S", overflow}, {"PT9223372036854775808S", overflow},
        {"P99999999999999999999D", overflow}, {"P106751992D", overflow},
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.text);
        try {
            XMLDurationToTimeInterval(c.text);
            ADD_FAILURE() << "no exception";
        } catch (const ExceptionPL& e) {
            EXPECT_EQ(e.Message(), c.message);
        }
    }
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

TEST(XMLDate, BothWays) {
    EXPECT_EQ(DateRecordToXMLDate({1, May, 987}).View(), "0987-05-01");
    EXPECT_EQ(DateRecordToXMLDate({31, December, 12345}).View(), "12345-12-31");
    EXPECT_EQ(TimeOfDayToXMLTime(TimeOfDay(9, 5, 0)).View(), "09:05:00");

    struct Read { const char* text; DateRecord date; };
    const Read kReads[] = {
        {"2013-05-01", {1, May, 2013}}, {"2013", {0, Month(0), 2013}}, {"2013-05", {0, May, 2013}},
        {"2013-5-1", {0, May, 2013}}, {"99999-99-99", {0, Month(0), 9999}}, {"", {}},
    };
    for (const Read& c : kReads) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(XMLDateToDateRecord(c.text), c.date);
    }
}

}  // namespace
