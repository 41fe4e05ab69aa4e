#pragma once

// One component of a path: the name of a file inside a directory.

#include <cstddef>
#include <string>
#include <string_view>

#include "base/Exceptions.h"

// The text holds "/" or a NUL byte, or is "." or "..".
class IllegalFileName : public DebuggableException {};
// The text is longer than a name may be.
class IllegalFileNameLength : public DebuggableException {};

// Bytes in the locale's encoding, like every path. The empty name is allowed
// as a value ("no name"); any other name is 1 to 255 bytes, holds no "/" and
// is not "." or "..", so joining it to a directory never leaves the directory.
class FileName {
public:
    static constexpr std::size_t kMaxLength = 255;

    FileName() = default;
    // Throws IllegalFileName or IllegalFileNameLength.
    explicit FileName(std::string_view text);

    const std::string& Text() const noexcept { return text_; }
    bool Empty() const noexcept { return text_.empty(); }

    friend bool operator==(const FileName& a, const FileName& b) noexcept { return a.text_ == b.text_; }
    friend bool operator!=(const FileName& a, const FileName& b) noexcept { return a.text_ != b.text_; }

private:
    std::string text_;
};
