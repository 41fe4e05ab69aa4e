#pragma once

#include <cstdint>

#include "base/unicode/UString.h"
#include "pipe/LockedQueue.h"

// One message of the client protocol: an XML document as UTF-8 text. The
// reader tags what it receives with 0.
struct UIMessage {
    std::uint32_t tag = 0;
    AutoUString<UTF8> text;
};

// The queues between the pipe's threads and the main thread (`readQ`,
// `writeQ`). Messages are copied (or moved) in and swapped out whole.
class UIMessageQueue : public LockedQueue<UIMessage> {};
