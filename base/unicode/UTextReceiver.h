#pragma once

// Where a writer puts the text it produces: it starts the receiver, hands it
// the text in pieces, and ends it. The string builder below keeps the whole
// text in memory, which is how messages to the client are assembled.

#include <cstddef>
#include <string>

#include "base/unicode/UString.h"

template <class Encoding> class UTextReceiver;

template <>
class UTextReceiver<UTF8> {
public:
    virtual ~UTextReceiver() = default;

    // A new text begins.
    virtual void StartText() = 0;
    // The next piece; the receiver copies what it keeps.
    virtual void AddText(UStringRef<UTF8> piece) = 0;
    // The text is complete.
    virtual void EndText() = 0;
};

// Collects the pieces into one growing buffer.
class UStringBuilder : public UTextReceiver<UTF8> {
public:
    // Messages are small: a few hundred bytes are usually enough for the whole
    // text, so it grows at most a couple of times.
    static constexpr std::size_t kMessageCapacity = 256;

    explicit UStringBuilder(std::size_t initialCapacity = kMessageCapacity);

    // Starting again empties the builder but keeps its buffer.
    void StartText() override;
    void AddText(UStringRef<UTF8> piece) override;
    void EndText() override;

    UStringRef<UTF8> Text() const noexcept { return UStringRef<UTF8>(text_); }
    std::size_t Size() const noexcept { return text_.size(); }
    // Hands the text over and leaves the builder empty.
    std::string TakeText();

private:
    std::string text_;
};
