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

TEST(FrameReader, TakesNothingBeyondTheFrame) {
    const std::string stream = Frame("one") + Frame("two");
    FrameReader reader;
    EXPECT_EQ(reader.Feed(stream.data(), stream.size()), 4u);  // the header, then it asks for 3
    EXPECT_EQ(reader.Feed(stream.data() + 4, stream.size() - 4), 3u);
    EXPECT_EQ(reader.Feed(stream.data() + 7, stream.size() - 7), 0u);  // until "one" is taken
}

TEST(FrameReader, HeaderIsLittleEndianAndCappedBeforeAllocating) {
    struct Case {
        const char* header;
        std::size_t wanted;  // payload bytes asked for next; 0: rejected
    };
    const Case cases[] = {
        {"\x03\x00\x00\x00", 3},
        {"\x00\x01\x00\x00", 256},
        {"\x00\x00\x20\x00", 2097152},  // the largest payload
        {"\x01\x00\x20\x00", 0},        // one byte more
        {"\x00\x00\x00\x01", 0},        // read big-endian this would be 1
        {"\xFF\xFF\xFF\xFF", 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::PrintToString(std::string(c.header, 4)));
        FrameReader reader;
        if (c.wanted != 0) {
            EXPECT_EQ(reader.Feed(c.header, 4), 4u);
            EXPECT_EQ(reader.Wanted(), c.wanted);
            continue;
        }
        EXPECT_THROW(reader.Feed(c.header, 4), UnixPipeReadMessageError);
        EXPECT_EQ(reader.GetState(), FrameReader::State::Killed);
        const std::string good = Frame("ok");  // dead for good
        EXPECT_THROW(reader.Feed(good.data(), good.size()), UnixPipeReadMessageError);
    }
}

TEST(FrameReader, EndOfStreamInsideFrameIsAnError) {
    struct Case {
        const char* name;
        std::string fed;
        bool cutShort;
    };
    const Case cases[] = {
        {"nothing", "", false},
        {"whole frame", Frame("abc"), false},
        {"half header", std::string("\x05\x00", 2), true},
        {"header only", Header(5), true},
        {"half payload", Header(5) + "ab", true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        FrameReader reader;
        FeedInPieces(reader, c.fed, c.fed.size() + 1);
        if (c.cutShort) EXPECT_THROW(reader.EndOfStream(), UnixPipeReadMessageError);
        else EXPECT_NO_THROW(reader.EndOfStream());
        EXPECT_THROW(reader.Feed("x", 1), UnixPipeReadMessageError);
    }
}

}  // namespace
