#pragma once

// Checking UTF-8 text and moving it to and from wide characters, the form the
// locale transcoders hand to libc.

#include <cstddef>
#include <string>
#include <string_view>

#include "base/Exceptions.h"
#include "base/unicode/UString.h"

// Malformed text in a Unicode encoding: an overlong form, a surrogate, a value
// above U+10FFFF, a truncated sequence or a stray continuation byte.
class InvalidTextEncoding : public DebuggableException {};

// Offset of the first byte that does not start a well-formed sequence, or
// std::string_view::npos when all of the text is well-formed UTF-8.
std::size_t FindInvalidUTF8(UStringRef<UTF8> text) noexcept;

inline bool IsValidUTF8(UStringRef<UTF8> text) noexcept {
    return FindInvalidUTF8(text) == std::string_view::npos;
}

// Whether a value is a Unicode scalar value (a code point that is not a
// surrogate), the only values UTF-8 may carry.
constexpr bool IsUnicodeScalar(char32_t c) noexcept {
    return c <= 0x10FFFF && (c < 0xD800 || c > 0xDFFF);
}

// Appends the UTF-8 form of a scalar value; throws InvalidTextEncoding for a
// surrogate or a value above U+10FFFF.
void AppendUTF8(std::string& out, char32_t c);

// One wide character per code point. Throws InvalidTextEncoding for malformed
// text. U+0000 is carried like any other character.
std::wstring UTF8ToWide(UStringRef<UTF8> text);

// The inverse; throws InvalidTextEncoding for a wide character that is not a
// Unicode scalar value.
AutoUString<UTF8> WideToUTF8(std::wstring_view text);
