#include "pipe/FrameReader.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/pipe/PipeTestSupport.h"

namespace {

// Feeds `stream` in pieces of at most `piece` bytes; returns the payloads.
std::vector<std::string> FeedInPieces(FrameReader& reader, const std::string& stream, std::size_t piece) {
    std::vector<std::string> messages;
    std::string message;
    for (std::size_t at = 0; at < stream.size();) {
        const std::size_t end = std::min(at + piece, stream.size());
        while (at < end) {
            at += reader.Feed(stream.data() + at, end - at);
            if (reader.TakeMessage(message)) messages.push_back(message);
        }
    }
    return messages;
}

TEST(FrameReader, StreamSplitAnywhereGivesSameMessages) {
    const std::vector<std::string> expected = {"<a/>", "", std::string(300, 'x'), "\xC3\xA9"};
    std::string stream;
    for (const auto& payload : expected) stream += Frame(payload);
    for (std::size_t piece = 1; piece <= stream.size(); ++piece) {
        SCOPED_TRACE(piece);
        FrameReader reader;
        EXPECT_EQ(FeedInPieces(reader, stream, piece), expected);
        EXPECT_NO_THROW(reader.EndOfStream());
    }
}

// Raw header bytes pin the byte order, which Header() would only mirror.
TEST(FrameReader, LengthIsLittleEndianCappedAndErrorsAreFinal) {
    FrameReader cut;
    EXPECT_EQ(cut.Feed("\x00\x01\x00\x00" "ab", 6), 4u);
    EXPECT_EQ(cut.Wanted(), 256u);
    EXPECT_EQ(cut.Feed("ab", 2), 2u);
    EXPECT_THROW(cut.EndOfStream(), UnixPipeReadMessageError);  // inside the payload
    EXPECT_THROW(cut.Feed("x", 1), UnixPipeReadMessageError);

    FrameReader overlong;
    EXPECT_THROW(overlong.Feed("\x01\x00\x20\x00", 4), UnixPipeReadMessageError);  // 2,097,153
    EXPECT_EQ(overlong.GetState(), FrameReader::State::Killed);
    EXPECT_THROW(overlong.Feed("\x00\x00\x00\x00", 4), UnixPipeReadMessageError);
}

}  // namespace
