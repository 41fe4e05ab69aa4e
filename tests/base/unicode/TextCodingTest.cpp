#include <gtest/gtest.h>

#include <clocale>
#include <random>
#include <vector>

#include "base/unicode/Base64.h"
#include "base/unicode/Local8Bit.h"
#include "base/unicode/Numerals.h"
#include "base/unicode/UTF8.h"
#include "tests/support/TestData.h"

namespace {

using namespace std::string_view_literals;
constexpr std::size_t kOk = std::string_view::npos;

struct UTF8Case {
    const char* name;
    std::string_view bytes;
    std::size_t badAt;  // kOk when well-formed
};

const UTF8Case kUTF8Cases[] = {
    {"empty", ""sv, kOk},                         {"ascii with NUL", "a\0b"sv, kOk},
    {"two-byte lowest", "\xC2\x80"sv, kOk},       {"euro", "x\xE2\x82\xAC"sv, kOk},
    {"before surrogates", "\xED\x9F\xBF"sv, kOk}, {"after surrogates", "\xEE\x80\x80"sv, kOk},
    {"highest scalar", "\xF4\x8F\xBF\xBF"sv, kOk}, {"overlong C0", "\xC0\xAF"sv, 0},
    {"overlong C1", "\xC1\xBF"sv, 0},             {"overlong three-byte", "\xE0\x9F\xBF"sv, 0},
    {"overlong four-byte", "\xF0\x8F\xBF\xBF"sv, 0}, {"high surrogate", "ab\xED\xA0\x80"sv, 2},
    {"low surrogate", "\xED\xBF\xBF"sv, 0},       {"above U+10FFFF", "\xF4\x90\x80\x80"sv, 0},
    {"F5 lead", "\xF5\x80\x80\x80"sv, 0},         {"truncated two-byte", "a\xC3"sv, 1},
    {"lead then ASCII", "\xE2\x82x"sv, 0},        {"stray continuation", "ok\x80"sv, 2},
};

TEST(UTF8, ValidationTable) {
    for (const UTF8Case& c : kUTF8Cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(FindInvalidUTF8(UStringRef<UTF8>(c.bytes)), c.badAt);
        if (c.badAt == kOk) {
            EXPECT_EQ(WideToUTF8(UTF8ToWide(c.bytes)).View(), c.bytes);
        } else {
            EXPECT_THROW(UTF8ToWide(c.bytes), InvalidTextEncoding);
        }
    }
}

TEST(UTF8, WideOutsideUnicodeIsRejected) {
    for (long w : {0xD800L, 0xDFFFL, 0x110000L, -1L}) {
        SCOPED_TRACE(w);
        EXPECT_THROW(WideToUTF8(std::wstring(1, static_cast<wchar_t>(w))), InvalidTextEncoding);
    }
}

TEST(UTF8, ScalarsRoundTripThroughWide) {
    for (char32_t c = 0; c <= 0x10FFFF; c += (c < 0x800 ? 1 : 97)) {
        if (!IsUnicodeScalar(c)) continue;
        std::string bytes;
        AppendUTF8(bytes, c);
        ASSERT_EQ(UTF8ToWide(bytes), std::wstring(1, static_cast<wchar_t>(c))) << static_cast<unsigned long>(c);
    }
}

using namespace UnixPlatform;

// Pins LC_CTYPE for one test and puts the previous locale back afterwards.
class LocaleTest : public ::testing::Test {
protected:
    void SetUp() override { saved_ = std::setlocale(LC_CTYPE, nullptr); }
    void TearDown() override { std::setlocale(LC_CTYPE, saved_.c_str()); }
    // False when the test must end: the locale is missing (a skip, or a
    // failure where the test command requires it).
    bool Pin(const char* name) {
        if (LocaleInstalled(name)) return std::setlocale(LC_CTYPE, name) != nullptr;
        if (!HasFailure()) [name] { GTEST_SKIP() << "locale " << name << " is not installed"; }();
        return false;
    }

private:
    std::string saved_;
};

TEST_F(LocaleTest, PlainCLocaleTakesOnlyASCII) {
    if (!Pin("C")) return;
    EXPECT_EQ(UTF8ToLocal8Bit("Take Action"), "Take Action");
    EXPECT_EQ(Local8BitToUTF8("a\0b"sv).View(), "a\0b"sv);
    // No substitution: a character the locale lacks is an error, not a "?".
    EXPECT_THROW(UTF8ToLocal8Bit("caf\xC3\xA9"), WideToMultiByteConvertError);
    EXPECT_THROW(Local8BitToUTF8("caf\xE9"), MultiByteToWideConvertError);
}

TEST_F(LocaleTest, UTF8LocaleKeepsTheBytes) {
    if (!Pin("C.UTF-8")) return;
    for (std::string_view text : {""sv, "caf\xC3\xA9"sv, "\xF0\x9F\x98\x80"sv, "nul\0inside\0"sv, "\0"sv}) {
        SCOPED_TRACE(testing::PrintToString(std::string(text)));
        EXPECT_EQ(UTF8ToLocal8Bit(text), text);
        EXPECT_EQ(Local8BitToUTF8(text).View(), text);
    }
    EXPECT_THROW(Local8BitToUTF8("\xC3("), MultiByteToWideConvertError);
    EXPECT_THROW(Local8BitToUTF8("\xED\xA0\x80"), MultiByteToWideConvertError);
    EXPECT_THROW(UTF8ToLocal8Bit("\xC0\xAF"), InvalidTextEncoding);
}

TEST_F(LocaleTest, NullTerminatedKeepsItsBufferWhenMoved) {
    if (!Pin("C.UTF-8")) return;
    AutoNullTerminated<char> text = MakeLocalNullTerminated("Snooze \xE2\x80\x93 1 hour");
    ASSERT_EQ(text.Size(), 17u);
    EXPECT_EQ(text.Get()[17], '\0');
    const char* handedOut = text.Get();
    std::vector<AutoNullTerminated<char>> owner;
    owner.push_back(std::move(text));
    for (int i = 0; i < 20; ++i) owner.emplace_back("x");  // forces reallocation
    EXPECT_EQ(owner.front().Get(), handedOut);
    EXPECT_STREQ(text.Get(), "");
}

TEST(Numerals, ReadTable) {
    enum Outcome { Value, NotNumeral, TooLarge };
    struct Case { const char* text; Outcome outcome; std::uint64_t value; };
    const Case kCases[] = {
        {"0", Value, 0}, {"007", Value, 7}, {"18446744073709551615", Value, 18446744073709551615ULL},
        {"18446744073709551616", TooLarge, 0}, {"", NotNumeral, 0}, {" 12", NotNumeral, 0}, {"1.0", NotNumeral, 0},
        {"99999999999999999999x", NotNumeral, 0},  // a bad character wins over overflow
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(std::string("\"") + c.text + "\"");
        switch (c.outcome) {
        case Value: EXPECT_EQ(ReadAsciiDecimalNumeral64(c.text), c.value); break;
        case NotNumeral: EXPECT_THROW(ReadAsciiDecimalNumeral64(c.text), NotANumeral); break;
        case TooLarge: EXPECT_THROW(ReadAsciiDecimalNumeral64(c.text), NumeralTooLarge); break;
        }
    }
}

TEST(Numerals, MakeIsCanonicalAndReadsBack) {
    EXPECT_EQ(MakeAsciiDecimalNumeral64(0).View(), "0");
    EXPECT_EQ(MakeAsciiDecimalNumeral64(18446744073709551615ULL).View(), "18446744073709551615");
    for (std::uint64_t v = 1; v < 18446744073709551615ULL / 3; v = v * 3 + 1) {
        EXPECT_EQ(ReadAsciiDecimalNumeral64(MakeAsciiDecimalNumeral64(v)), v);
    }
}

TEST(Base64, RandomBytesOfEveryLengthRoundTrip) {
    std::mt19937 random(20261122);
    for (std::size_t length = 0; length <= 64; ++length) {
        SCOPED_TRACE(length);
        std::string bytes(length, '\0');
        for (char& b : bytes) b = static_cast<char>(random());
        const AutoUString<UTF8> text = Base64Encoder::Encode(bytes);
        EXPECT_EQ(text.Size(), (length + 2) / 3 * 4);
        EXPECT_EQ(Base64Decoder::Decode(text.View()), bytes);
    }
}

struct Base64Case {
    const char* text;
    const char* bytes;  // null when decoding must fail
};

const Base64Case kDecode[] = {
    {"", ""}, {"Zg==", "f"}, {"Zm8=", "fo"}, {"Zm9vYmFy", "foobar"},
    {"  Zm9v\r\n\tYmFy \n", "foobar"}, {"Zm9v\r\nYg=\r\n=\r\n", "foob"},
    {"Zh==", "f"},  // leftover bits before the padding are ignored
    {"Zm9v!mFy", nullptr}, {"Zm9v-mFy", nullptr}, {"Zm9v\fYmFy", nullptr},
    {"Zm9", nullptr}, {"Zg=", nullptr}, {"Zg===", nullptr}, {"Z===", nullptr}, {"====", nullptr},
    {"Zm8=Zm8=", nullptr}, {"Zg==x", nullptr}, {"Zg=x", nullptr}, {"Z", nullptr},
};

TEST(Base64, DecodeTable) {
    for (const Base64Case& c : kDecode) {
        SCOPED_TRACE(std::string("\"") + c.text + "\"");
        if (c.bytes) {
            EXPECT_EQ(Base64Decoder::Decode(c.text), c.bytes);
        } else {
            EXPECT_THROW(Base64Decoder::Decode(c.text), Base64DecodeError);
        }
    }
}

}  // namespace
