#include "base/unicode/Numerals.h"

#include <gtest/gtest.h>

namespace {

enum class Outcome { Value, NotANumeral, TooLarge };

struct Case {
    const char* text;
    Outcome outcome;
    std::uint64_t value;
};

const Case kDecimal[] = {
    {"0", Outcome::Value, 0},
    {"007", Outcome::Value, 7},
    {"4294967296", Outcome::Value, 4294967296ULL},
    {"18446744073709551615", Outcome::Value, 18446744073709551615ULL},
    {"18446744073709551616", Outcome::TooLarge, 0},
    {"18446744073709551620", Outcome::TooLarge, 0},
    {"99999999999999999999", Outcome::TooLarge, 0},
    {"00000000000000000000018446744073709551615", Outcome::Value, 18446744073709551615ULL},
    {"", Outcome::NotANumeral, 0},
    {"12 ", Outcome::NotANumeral, 0},
    {" 12", Outcome::NotANumeral, 0},
    {"+1", Outcome::NotANumeral, 0},
    {"-1", Outcome::NotANumeral, 0},
    {"1.0", Outcome::NotANumeral, 0},
    {"0x10", Outcome::NotANumeral, 0},
    {"1a", Outcome::NotANumeral, 0},
    // A bad character is reported even after the value has overflowed.
    {"99999999999999999999x", Outcome::NotANumeral, 0},
};

const Case kHex[] = {
    {"0", Outcome::Value, 0},
    {"fF", Outcome::Value, 255},
    {"DeadBeef", Outcome::Value, 0xDEADBEEF},
    {"ffffffffffffffff", Outcome::Value, 0xFFFFFFFFFFFFFFFFULL},
    {"10000000000000000", Outcome::TooLarge, 0},
    {"", Outcome::NotANumeral, 0},
    {"0x1", Outcome::NotANumeral, 0},
    {"g", Outcome::NotANumeral, 0},
    {" a", Outcome::NotANumeral, 0},
};

void Check(const Case& c, std::uint64_t (*read)(UStringRef<UTF8>)) {
    SCOPED_TRACE(std::string("\"") + c.text + "\"");
    switch (c.outcome) {
    case Outcome::Value: EXPECT_EQ(read(c.text), c.value); break;
    case Outcome::NotANumeral: EXPECT_THROW(read(c.text), NotANumeral); break;
    case Outcome::TooLarge: EXPECT_THROW(read(c.text), NumeralTooLarge); break;
    }
}

TEST(Numerals, ReadDecimal) {
    for (const Case& c : kDecimal) Check(c, ReadAsciiDecimalNumeral64);
}

TEST(Numerals, ReadHex) {
    for (const Case& c : kHex) Check(c, ReadAsciiHexNumeral64);
}

TEST(Numerals, MakeIsCanonicalAndReadsBack) {
    EXPECT_EQ(MakeAsciiDecimalNumeral64(0).View(), "0");
    EXPECT_EQ(MakeAsciiDecimalNumeral64(18446744073709551615ULL).View(), "18446744073709551615");
    EXPECT_EQ(MakeAsciiHexNumeral64(0).View(), "0");
    EXPECT_EQ(MakeAsciiHexNumeral64(0xABCDEF0123ULL).View(), "abcdef0123");
    for (std::uint64_t v = 1; v < 18446744073709551615ULL / 3; v = v * 3 + 1) {
        SCOPED_TRACE(v);
        EXPECT_EQ(ReadAsciiDecimalNumeral64(MakeAsciiDecimalNumeral64(v)), v);
        EXPECT_EQ(ReadAsciiHexNumeral64(MakeAsciiHexNumeral64(v)), v);
    }
}

}  // namespace
