#include "base/unicode/Numerals.h"

#include <gtest/gtest.h>

namespace {

enum Outcome { Value, NotNumeral, TooLarge };

struct Case {
    const char* text;
    Outcome outcome;
    std::uint64_t value;
};

const Case kDecimal[] = {
    {"0", Value, 0}, {"007", Value, 7}, {"18446744073709551615", Value, 18446744073709551615ULL},
    {"000000000018446744073709551615", Value, 18446744073709551615ULL},
    {"18446744073709551616", TooLarge, 0}, {"99999999999999999999", TooLarge, 0},
    {"", NotNumeral, 0}, {"12 ", NotNumeral, 0}, {" 12", NotNumeral, 0}, {"+1", NotNumeral, 0},
    {"-1", NotNumeral, 0}, {"1.0", NotNumeral, 0}, {"0x10", NotNumeral, 0},
    {"99999999999999999999x", NotNumeral, 0},  // a bad character wins over overflow
};

const Case kHex[] = {
    {"DeadBeef", Value, 0xDEADBEEF}, {"ffffffffffffffff", Value, 0xFFFFFFFFFFFFFFFFULL},
    {"10000000000000000", TooLarge, 0}, {"", NotNumeral, 0}, {"0x1", NotNumeral, 0}, {"g", NotNumeral, 0},
};

void Check(const Case& c, std::uint64_t (*read)(UStringRef<UTF8>)) {
    SCOPED_TRACE(std::string("\"") + c.text + "\"");
    switch (c.outcome) {
    case Value: EXPECT_EQ(read(c.text), c.value); break;
    case NotNumeral: EXPECT_THROW(read(c.text), NotANumeral); break;
    case TooLarge: EXPECT_THROW(read(c.text), NumeralTooLarge); break;
    }
}

TEST(Numerals, ReadTables) {
    for (const Case& c : kDecimal) Check(c, ReadAsciiDecimalNumeral64);
    for (const Case& c : kHex) Check(c, ReadAsciiHexNumeral64);
}

TEST(Numerals, MakeIsCanonicalAndReadsBack) {
    EXPECT_EQ(MakeAsciiDecimalNumeral64(0).View(), "0");
    EXPECT_EQ(MakeAsciiDecimalNumeral64(18446744073709551615ULL).View(), "18446744073709551615");
    EXPECT_EQ(MakeAsciiHexNumeral64(0xABCDEF0123ULL).View(), "abcdef0123");
    for (std::uint64_t v = 1; v < 18446744073709551615ULL / 3; v = v * 3 + 1) {
        EXPECT_EQ(ReadAsciiDecimalNumeral64(MakeAsciiDecimalNumeral64(v)), v);
        EXPECT_EQ(ReadAsciiHexNumeral64(MakeAsciiHexNumeral64(v)), v);
    }
}

}  // namespace
