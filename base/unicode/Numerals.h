#pragma once

// Reading and writing unsigned 64-bit numbers as ASCII numerals, the form the
// client protocol carries them in.

#include <cstdint>

#include "base/Exceptions.h"
#include "base/unicode/UString.h"

// The text is not a numeral: it is empty or holds a character that is not a
// digit (a sign, a blank, a point).
class NotANumeral : public DebuggableException {};

// The numeral is well-formed but its value does not fit the target type.
class NumeralTooLarge : public DebuggableException {};

// Only the digits 0 to 9; nothing is trimmed, leading zeros are digits like
// any other. A value above 18446744073709551615 throws NumeralTooLarge.
std::uint64_t ReadAsciiDecimalNumeral64(UStringRef<UTF8> text);

// No sign, no leading zeros, "0" for zero.
AutoUString<UTF8> MakeAsciiDecimalNumeral64(std::uint64_t value);
