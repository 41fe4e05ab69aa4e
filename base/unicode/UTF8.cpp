#include "base/unicode/UTF8.h"

#include <utility>

namespace {

static_assert(sizeof(wchar_t) == 4, "wide characters must hold a whole code point (UCS-4)");

// Length of the well-formed sequence starting at text[i], or 0 when there is
// none. The second-byte ranges are what rule out overlong forms (E0, F0),
// surrogates (ED) and values above U+10FFFF (F4); C0, C1 and F5..FF never
// start a sequence.
std::size_t SequenceLength(std::string_view text, std::size_t i) noexcept {
    auto byte = [&](std::size_t k) { return static_cast<unsigned char>(text[k]); };
    const unsigned char lead = byte(i);
    if (lead < 0x80) return 1;

    std::size_t length;
    unsigned char low = 0x80, high = 0xBF;  // allowed range of the second byte
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        if (lead == 0xE0) low = 0xA0;
        if (lead == 0xED) high = 0x9F;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        if (lead == 0xF0) low = 0x90;
        if (lead == 0xF4) high = 0x8F;
    } else {
        return 0;
    }
    if (text.size() - i < length) return 0;
    if (byte(i + 1) < low || byte(i + 1) > high) return 0;
    for (std::size_t k = 2; k < length; ++k) {
        if ((byte(i + k) & 0xC0) != 0x80) return 0;
    }
    return length;
}

// Decodes the sequence at text[i], which SequenceLength has accepted.
char32_t DecodeAt(std::string_view text, std::size_t i, std::size_t length) noexcept {
    auto byte = [&](std::size_t k) { return static_cast<char32_t>(static_cast<unsigned char>(text[k])); };
    static constexpr char32_t kLeadMask[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
    char32_t c = byte(i) & kLeadMask[length];
    for (std::size_t k = 1; k < length; ++k) c = (c << 6) | (byte(i + k) & 0x3F);
    return c;
}

}  // namespace

std::size_t FindInvalidUTF8(UStringRef<UTF8> text) noexcept {
    const std::string_view view = text.View();
    for (std::size_t i = 0; i < view.size();) {
        const std::size_t length = SequenceLength(view, i);
        if (length == 0) return i;
        i += length;
    }
    return std::string_view::npos;
}

void AppendUTF8(std::string& out, char32_t c) {
    if (!IsUnicodeScalar(c)) throw InvalidTextEncoding();
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

std::wstring UTF8ToWide(UStringRef<UTF8> text) {
    const std::string_view view = text.View();
    std::wstring wide;
    wide.reserve(view.size());
    for (std::size_t i = 0; i < view.size();) {
        const std::size_t length = SequenceLength(view, i);
        if (length == 0) throw InvalidTextEncoding();
        wide += static_cast<wchar_t>(DecodeAt(view, i, length));
        i += length;
    }
    return wide;
}

AutoUString<UTF8> WideToUTF8(std::wstring_view text) {
    std::string out;
    out.reserve(text.size());
    // wchar_t is signed here: a negative value must fail, not wrap to a valid one.
    for (wchar_t w : text) {
        if (w < 0) throw InvalidTextEncoding();
        AppendUTF8(out, static_cast<char32_t>(w));
    }
    return AutoUString<UTF8>(std::move(out));
}
