#pragma once

// Scanning of format texts: "Offers for {name}" is the literal "Offers for "
// followed by the variable "name". The iterator only splits the text into
// segments; binding and rendering (FormatBindings.h, UFormat.h) are separate
// functions on top of it.

#include "base/Exceptions.h"
#include "base/unicode/UString.h"

// A "{" with no "}" after it.
class BadFormatStringError : public DebuggableException {};

// One segment: either literal text, or a placeholder's name without braces.
struct UFormatSegment {
    bool isVariable = false;
    UStringRef<UTF8> text;
};

// Walks a format text segment by segment. A default-constructed or end
// iterator sits at the end of its text; two iterators over the same text are
// equal when they stand on the same position.
class UFormatIterator {
public:
    UFormatIterator() = default;
    // Positioned on the first segment (or at the end of an empty text).
    explicit UFormatIterator(UStringRef<UTF8> text);
    static UFormatIterator End(UStringRef<UTF8> text);

    // Moves to the segment that starts where the current one ends.
    void GetNextSegment();

    const UFormatSegment& operator*() const noexcept { return segment_; }
    const UFormatSegment* operator->() const noexcept { return &segment_; }
    UFormatIterator& operator++() {
        GetNextSegment();
        return *this;
    }
    bool AtEnd() const noexcept { return current_ == end_; }

    friend bool operator==(const UFormatIterator& a, const UFormatIterator& b) noexcept {
        return a.current_ == b.current_;
    }
    friend bool operator!=(const UFormatIterator& a, const UFormatIterator& b) noexcept {
        return !(a == b);
    }

private:
    const char* begin_ = nullptr;
    const char* end_ = nullptr;
    const char* current_ = nullptr;
    const char* after_ = nullptr;
    UFormatSegment segment_;
};
