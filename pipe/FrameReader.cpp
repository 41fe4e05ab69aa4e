#include "pipe/FrameReader.h"

#include <algorithm>
#include <cstring>
#include <utility>

std::size_t FrameReader::Wanted() const noexcept {
    if (hasMessage_) return 0;
    switch (state_) {
    case State::Header: return kFrameHeaderSize - headerFill_;
    case State::Payload: return length_ - payload_.size();
    case State::Killed: return 0;
    }
    return 0;
}

std::size_t FrameReader::Feed(const char* data, std::size_t size) {
    if (hasMessage_) return 0;
    switch (state_) {
    case State::Header: return FeedHeader(data, size);
    case State::Payload: return FeedPayload(data, size);
    case State::Killed: Die();
    }
    return 0;
}

std::size_t FrameReader::FeedHeader(const char* data, std::size_t size) {
    const std::size_t taken = std::min(size, kFrameHeaderSize - headerFill_);
    if (taken != 0) std::memcpy(header_ + headerFill_, data, taken);
    headerFill_ += taken;
    if (headerFill_ < kFrameHeaderSize) return taken;

    // Little-endian by shifts, whatever the host's own order.
    const std::uint32_t length = static_cast<std::uint32_t>(header_[0]) |
                                 static_cast<std::uint32_t>(header_[1]) << 8 |
                                 static_cast<std::uint32_t>(header_[2]) << 16 |
                                 static_cast<std::uint32_t>(header_[3]) << 24;
    headerFill_ = 0;
    // Cap before allocating: a bad header must not cost 4 GiB.
    if (length > kMaxFramePayload) Die();
    length_ = length;
    payload_.clear();
    if (length_ == 0) {
        hasMessage_ = true;  // an empty message; the stream goes on
        return taken;
    }
    payload_.reserve(length_);
    state_ = State::Payload;
    return taken;
}

std::size_t FrameReader::FeedPayload(const char* data, std::size_t size) {
    const std::size_t taken = std::min(size, static_cast<std::size_t>(length_) - payload_.size());
    payload_.append(data, taken);
    if (payload_.size() == length_) {
        hasMessage_ = true;
        state_ = State::Header;
    }
    return taken;
}

bool FrameReader::TakeMessage(std::string& out) {
    if (!hasMessage_) return false;
    out = std::move(payload_);
    payload_.clear();
    hasMessage_ = false;
    return true;
}

void FrameReader::EndOfStream() {
    const bool midFrame = state_ == State::Payload || (state_ == State::Header && headerFill_ > 0);
    state_ = State::Killed;
    if (midFrame) throw UnixPipeReadMessageError();
}

void FrameReader::Die() {
    state_ = State::Killed;
    payload_.clear();
    payload_.shrink_to_fit();
    hasMessage_ = false;
    throw UnixPipeReadMessageError();
}

void EncodeFrameHeader(std::uint32_t length, unsigned char out[kFrameHeaderSize]) noexcept {
    out[0] = static_cast<unsigned char>(length);
    out[1] = static_cast<unsigned char>(length >> 8);
    out[2] = static_cast<unsigned char>(length >> 16);
    out[3] = static_cast<unsigned char>(length >> 24);
}
