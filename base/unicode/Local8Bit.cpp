#include "base/unicode/Local8Bit.h"

#include <cstdlib>
#include <utility>

#include "base/unicode/UTF8.h"

namespace UnixPlatform {

namespace {

constexpr std::size_t kConvertFailed = static_cast<std::size_t>(-1);

// wcstombs and mbstowcs stop at the first NUL, so the text is converted one
// NUL-free run at a time and the NULs are copied across between the runs.
template <class CharIn, class Convert>
void ForEachNulFreeRun(std::basic_string_view<CharIn> text, Convert convert) {
    std::size_t start = 0;
    for (;;) {
        const std::size_t nul = text.find(CharIn(0), start);
        const std::size_t end = nul == text.npos ? text.size() : nul;
        convert(text.substr(start, end - start), nul != text.npos);
        if (nul == text.npos) return;
        start = nul + 1;
    }
}

}  // namespace

std::string UTF8ToLocal8Bit(UStringRef<UTF8> text) {
    const std::wstring wide = UTF8ToWide(text);
    std::string out;
    ForEachNulFreeRun<wchar_t>(wide, [&](std::wstring_view run, bool nulFollows) {
        if (!run.empty()) {
            const std::wstring piece(run);  // NUL-terminated for libc
            const std::size_t size = std::wcstombs(nullptr, piece.c_str(), 0);
            if (size == kConvertFailed) throw WideToMultiByteConvertError();
            const std::size_t at = out.size();
            out.resize(at + size);
            // size + 1 lets wcstombs write its terminator into the string's own.
            if (std::wcstombs(&out[at], piece.c_str(), size + 1) != size) throw WideToMultiByteConvertError();
        }
        if (nulFollows) out += '\0';
    });
    return out;
}

AutoUString<UTF8> Local8BitToUTF8(std::string_view text) {
    std::wstring wide;
    ForEachNulFreeRun<char>(text, [&](std::string_view run, bool nulFollows) {
        if (!run.empty()) {
            const std::string piece(run);
            const std::size_t size = std::mbstowcs(nullptr, piece.c_str(), 0);
            if (size == kConvertFailed) throw MultiByteToWideConvertError();
            const std::size_t at = wide.size();
            wide.resize(at + size);
            if (std::mbstowcs(&wide[at], piece.c_str(), size + 1) != size) throw MultiByteToWideConvertError();
        }
        if (nulFollows) wide += L'\0';
    });
    try {
        return WideToUTF8(wide);
    } catch (const InvalidTextEncoding&) {
        // A locale that decodes to something beyond Unicode is the locale's fault.
        throw MultiByteToWideConvertError();
    }
}

AutoNullTerminated<char> MakeLocalNullTerminated(UStringRef<UTF8> text) {
    return AutoNullTerminated<char>(UTF8ToLocal8Bit(text));
}

}  // namespace UnixPlatform
