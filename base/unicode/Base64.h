#pragma once

// Base64 with the standard alphabet (A-Z a-z 0-9 + /) and "=" padding, the
// form delivered file content travels in.

#include <cstdint>
#include <string>
#include <string_view>

#include "base/Exceptions.h"
#include "base/unicode/UString.h"

// A character outside the alphabet, misplaced or missing padding, or data
// after the padding.
class Base64DecodeError : public DebuggableException {};

// Decodes text that may arrive in pieces. XML white space (space, tab, CR,
// LF) is skipped anywhere, so indented or line-wrapped content decodes. The
// last quantum must be padded to four characters. Bits left over in the last
// character before the padding are ignored. After an error the decoder stays
// failed: every later call throws again.
class Base64Decoder {
public:
    // Decodes one piece; the bytes go to the end of `out`.
    void Feed(std::string_view text, std::string& out);
    // Ends the text; throws when it stopped inside a quantum.
    void Finish();

    // The whole text at once, as bytes.
    static std::string Decode(std::string_view text);

private:
    enum class State { Data, Padding, Done, Failed };

    void Fail();
    void Character(char c, std::string& out);

    State state_ = State::Data;
    std::uint32_t bits_ = 0;  // the sextets of the quantum read so far
    int count_ = 0;           // characters of the quantum read, padding included
};

// Encodes bytes that may arrive in pieces, with no line breaks.
class Base64Encoder {
public:
    // Encodes one piece; the characters go to the end of `out`.
    void Feed(std::string_view bytes, std::string& out);
    // Writes the last, padded quantum; the encoder may be used again after it.
    void Finish(std::string& out);

    static AutoUString<UTF8> Encode(std::string_view bytes);

private:
    std::uint32_t bits_ = 0;
    int count_ = 0;  // bytes held back, 0 to 2
};
