#include "base/unicode/Local8Bit.h"

#include <gtest/gtest.h>

#include <clocale>
#include <vector>

#include "base/unicode/LocaleInfo.h"
#include "base/unicode/UTF8.h"

namespace {

using namespace std::string_view_literals;
using namespace UnixPlatform;

// Pins LC_CTYPE for one test and puts the previous locale back afterwards.
class LocaleTest : public ::testing::Test {
protected:
    void SetUp() override { saved_ = std::setlocale(LC_CTYPE, nullptr); }
    void TearDown() override { std::setlocale(LC_CTYPE, saved_.c_str()); }
    void Pin(const char* name) {
        if (!std::setlocale(LC_CTYPE, name)) GTEST_SKIP() << "locale " << name << " is not installed";
    }

private:
    std::string saved_;
};

TEST_F(LocaleTest, PlainCLocaleTakesOnlyASCII) {
    Pin("C");
    EXPECT_FALSE(LocaleIsUTF8());
    EXPECT_EQ(UTF8ToLocal8Bit("Take Action"), "Take Action");
    EXPECT_EQ(Local8BitToUTF8("a\0b"sv).View(), "a\0b"sv);
    // No substitution: a character the locale lacks is an error, not a "?".
    EXPECT_THROW(UTF8ToLocal8Bit("caf\xC3\xA9"), WideToMultiByteConvertError);
    EXPECT_THROW(Local8BitToUTF8("caf\xE9"), MultiByteToWideConvertError);
}

TEST_F(LocaleTest, UTF8LocaleKeepsTheBytes) {
    Pin("C.UTF-8");
    EXPECT_TRUE(LocaleIsUTF8());
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
    Pin("C.UTF-8");
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

}  // namespace
