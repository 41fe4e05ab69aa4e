#include "base/unicode/Numerals.h"

#include <limits>
#include <string>

namespace {

constexpr std::uint64_t kMax = std::numeric_limits<std::uint64_t>::max();

int HexDigitValue(char c) noexcept {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// Reads the whole text in the given base. A bad character anywhere wins over
// an overflow earlier in the text, so "99999999999999999999x" is not a numeral.
std::uint64_t ReadNumeral(std::string_view text, unsigned base) {
    if (text.empty()) throw NotANumeral();
    std::uint64_t value = 0;
    bool overflow = false;
    for (char c : text) {
        const int digit = HexDigitValue(c);
        if (digit < 0 || static_cast<unsigned>(digit) >= base) throw NotANumeral();
        if (value > (kMax - static_cast<unsigned>(digit)) / base) overflow = true;
        value = value * base + static_cast<unsigned>(digit);
    }
    if (overflow) throw NumeralTooLarge();
    return value;
}

AutoUString<UTF8> MakeNumeral(std::uint64_t value, unsigned base) {
    static constexpr char kDigits[] = "0123456789abcdef";
    char buffer[64];  // 64 binary digits is the longest any base needs
    char* end = buffer + sizeof buffer;
    char* start = end;
    do {
        *--start = kDigits[value % base];
        value /= base;
    } while (value != 0);
    return AutoUString<UTF8>(std::string(start, end));
}

}  // namespace

std::uint64_t ReadAsciiDecimalNumeral64(UStringRef<UTF8> text) { return ReadNumeral(text.View(), 10); }

AutoUString<UTF8> MakeAsciiDecimalNumeral64(std::uint64_t value) { return MakeNumeral(value, 10); }

std::uint64_t ReadAsciiHexNumeral64(UStringRef<UTF8> text) { return ReadNumeral(text.View(), 16); }

AutoUString<UTF8> MakeAsciiHexNumeral64(std::uint64_t value) { return MakeNumeral(value, 16); }
