// The frame machine on any bytes, cut into pieces whose sizes the data picks:
// only its own error may escape, payloads stay within the limit, and once
// dead it stays dead.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "pipe/FrameReader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FrameReader reader;
    std::string message;
    try {
        for (std::size_t at = 0; at < size;) {
            const std::size_t piece = data[at++] % 8 + 1;  // first byte of a piece: its length
            for (std::size_t end = at + piece < size ? at + piece : size; at < end;) {
                at += reader.Feed(reinterpret_cast<const char*>(data) + at, end - at);
                if (reader.TakeMessage(message) && message.size() > kMaxFramePayload) std::abort();
            }
        }
        reader.EndOfStream();
    } catch (const UnixPipeReadMessageError&) {
        if (reader.GetState() != FrameReader::State::Killed) std::abort();
        try { reader.Feed("x", 1); std::abort(); } catch (const UnixPipeReadMessageError&) {}
    }
    return 0;
}
