#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <thread>

#include "pipe/FrameReader.h"
#include "pipe/UIMessage.h"

inline std::string Header(std::uint32_t length) {
    unsigned char bytes[kFrameHeaderSize];
    EncodeFrameHeader(length, bytes);
    return std::string(reinterpret_cast<const char*>(bytes), sizeof bytes);
}

inline UIMessage Message(const std::string& text) {
    UIMessage message;
    message.text = AutoUString<UTF8>(text);
    return message;
}

inline std::string Frame(const std::string& payload) {
    return Header(static_cast<std::uint32_t>(payload.size())) + payload;
}

// Polls `done` every millisecond for up to ten seconds, for states that give
// no event to block on (a reference count, a detached thread's exit). The
// bound only keeps a broken build from hanging.
template <class Predicate>
bool WaitUntil(Predicate done) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!done()) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}
