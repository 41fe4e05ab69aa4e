#include "base/unicode/Numerals.h"

#include <limits>
#include <string>

std::uint64_t ReadAsciiDecimalNumeral64(UStringRef<UTF8> text) {
    const std::string_view digits = text.View();
    if (digits.empty()) throw NotANumeral();
    constexpr std::uint64_t kMax = std::numeric_limits<std::uint64_t>::max();
    std::uint64_t value = 0;
    bool overflow = false;
    // A bad character anywhere wins over an overflow earlier in the text, so
    // "99999999999999999999x" is not a numeral.
    for (char c : digits) {
        if (c < '0' || c > '9') throw NotANumeral();
        const auto digit = static_cast<std::uint64_t>(c - '0');
        if (value > (kMax - digit) / 10) overflow = true;
        value = value * 10 + digit;
    }
    if (overflow) throw NumeralTooLarge();
    return value;
}

AutoUString<UTF8> MakeAsciiDecimalNumeral64(std::uint64_t value) { return AutoUString<UTF8>(std::to_string(value)); }
