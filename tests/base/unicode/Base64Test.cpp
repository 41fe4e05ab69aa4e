#include "base/unicode/Base64.h"

#include <gtest/gtest.h>

#include <random>

namespace {

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

struct Case {
    const char* text;
    const char* bytes;  // null when decoding must fail
};

const Case kDecode[] = {
    {"", ""}, {"Zg==", "f"}, {"Zm8=", "fo"}, {"Zm9vYmFy", "foobar"},
    {"  Zm9v\r\n\tYmFy \n", "foobar"}, {"Zm9v\r\nYg=\r\n=\r\n", "foob"},
    {"Zh==", "f"},  // leftover bits before the padding are ignored
    {"Zm9v!mFy", nullptr}, {"Zm9v-mFy", nullptr}, {"Zm9v\fYmFy", nullptr},
    {"Zm9", nullptr}, {"Zg=", nullptr}, {"Zg===", nullptr}, {"Z===", nullptr}, {"====", nullptr},
    {"Zm8=Zm8=", nullptr}, {"Zg==x", nullptr}, {"Zg=x", nullptr}, {"Z", nullptr},
};

TEST(Base64, DecodeTable) {
    for (const Case& c : kDecode) {
        SCOPED_TRACE(std::string("\"") + c.text + "\"");
        if (c.bytes) {
            EXPECT_EQ(Base64Decoder::Decode(c.text), c.bytes);
        } else {
            EXPECT_THROW(Base64Decoder::Decode(c.text), Base64DecodeError);
        }
    }
}

TEST(Base64, DecodeInPiecesMatchesWhole) {
    const std::string text = "SGVs\r\nbG8s IHdv\ncmxkIQ==\n";
    for (std::size_t cut = 0; cut <= text.size(); ++cut) {
        SCOPED_TRACE(cut);
        Base64Decoder decoder;
        std::string out;
        decoder.Feed(std::string_view(text).substr(0, cut), out);
        decoder.Feed(std::string_view(text).substr(cut), out);
        decoder.Finish();
        EXPECT_EQ(out, "Hello, world!");
    }
}

TEST(Base64, DecoderStaysFailed) {
    Base64Decoder decoder;
    std::string out;
    EXPECT_THROW(decoder.Feed("Zm*v", out), Base64DecodeError);
    EXPECT_THROW(decoder.Feed("Zm9v", out), Base64DecodeError);
    EXPECT_THROW(decoder.Finish(), Base64DecodeError);
}

}  // namespace
