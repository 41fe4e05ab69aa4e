#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "base/Exceptions.h"

// An input frame that is malformed (length above the limit) or cut short.
class UnixPipeReadMessageError : public DebuggableException {};

// Frames on the wire: a 4-byte little-endian payload length, then the payload.
constexpr std::size_t kFrameHeaderSize = 4;
constexpr std::uint32_t kMaxFramePayload = 2097152;

// Cuts a byte stream into frame payloads, one state at a time:
//
//   Header   collecting the 4 length bytes
//   Payload  collecting `length` payload bytes
//   Killed   after any error, for good
//
// It never takes more bytes than the current frame needs, so a caller reading
// from a descriptor can ask for exactly Wanted() bytes and leave everything
// after the frame unread.
class FrameReader {
public:
    enum class State { Header, Payload, Killed };

    State GetState() const noexcept { return state_; }

    // Bytes still missing from the current header or payload; 0 once killed
    // or while a finished message waits to be taken.
    std::size_t Wanted() const noexcept;

    // Takes at most Wanted() bytes from `data` and returns how many it took.
    // When a frame is complete its payload waits for TakeMessage, and nothing
    // more is taken until then. Throws UnixPipeReadMessageError, and is dead
    // from then on, for a length above kMaxFramePayload or when already dead.
    std::size_t Feed(const char* data, std::size_t size);

    bool HasMessage() const noexcept { return hasMessage_; }
    // Moves the finished payload into `out`; false if there is none.
    bool TakeMessage(std::string& out);

    // The stream has ended: the reader is dead. A frame that had begun is
    // cut short, which throws UnixPipeReadMessageError.
    void EndOfStream();

private:
    std::size_t FeedHeader(const char* data, std::size_t size);
    std::size_t FeedPayload(const char* data, std::size_t size);
    [[noreturn]] void Die();

    State state_ = State::Header;
    unsigned char header_[kFrameHeaderSize] = {};
    std::size_t headerFill_ = 0;
    std::uint32_t length_ = 0;
    std::string payload_;
    bool hasMessage_ = false;
};

// The 4 header bytes for a payload of `length` bytes.
void EncodeFrameHeader(std::uint32_t length, unsigned char out[kFrameHeaderSize]) noexcept;
