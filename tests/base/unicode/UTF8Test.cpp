#include "base/unicode/UTF8.h"

#include <gtest/gtest.h>

namespace {

using namespace std::string_view_literals;
constexpr std::size_t kOk = std::string_view::npos;

struct Case {
    const char* name;
    std::string_view bytes;
    std::size_t badAt;  // kOk when well-formed
};

const Case kCases[] = {
    {"empty", ""sv, kOk},                         {"ascii with NUL", "a\0b"sv, kOk},
    {"two-byte lowest", "\xC2\x80"sv, kOk},       {"euro", "x\xE2\x82\xAC"sv, kOk},
    {"before surrogates", "\xED\x9F\xBF"sv, kOk}, {"after surrogates", "\xEE\x80\x80"sv, kOk},
    {"highest scalar", "\xF4\x8F\xBF\xBF"sv, kOk}, {"overlong C0", "\xC0\xAF"sv, 0},
    {"overlong C1", "\xC1\xBF"sv, 0},             {"overlong three-byte", "\xE0\x9F\xBF"sv, 0},
    {"overlong four-byte", "\xF0\x8F\xBF\xBF"sv, 0}, {"high surrogate", "ab\xED\xA0\x80"sv, 2},
    {"low surrogate", "\xED\xBF\xBF"sv, 0},       {"above U+10FFFF", "\xF4\x90\x80\x80"sv, 0},
    {"F5 lead", "\xF5\x80\x80\x80"sv, 0},         {"FF byte", "\xFF"sv, 0},
    {"truncated two-byte", "a\xC3"sv, 1},         {"truncated four-byte", "\xF0\x9F\x98"sv, 0},
    {"lead then ASCII", "\xE2\x82x"sv, 0},        {"stray continuation", "ok\x80"sv, 2},
    {"continuation after char", "\xC3\xA9\xA9"sv, 2},
};

TEST(UTF8, ValidationTable) {
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(FindInvalidUTF8(UStringRef<UTF8>(c.bytes)), c.badAt);
        if (c.badAt == kOk) {
            EXPECT_EQ(WideToUTF8(UTF8ToWide(c.bytes)).View(), c.bytes);
        } else {
            EXPECT_THROW(ValidateUTF8(c.bytes), InvalidTextEncoding);
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

}  // namespace
