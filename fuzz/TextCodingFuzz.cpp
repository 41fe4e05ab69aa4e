// Any bytes through the text codings a client's values pass: Base64 content,
// UTF-8 checks, the locale transcoders and the numerals. Only their own
// errors may escape, and what decodes must encode back to the same bytes.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "base/unicode/Base64.h"
#include "base/unicode/Local8Bit.h"
#include "base/unicode/Numerals.h"
#include "base/unicode/UTF8.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    try {
        const std::string decoded = Base64Decoder::Decode(bytes);
        if (Base64Decoder::Decode(Base64Encoder::Encode(decoded).View()) != decoded) std::abort();
    } catch (const Base64DecodeError&) {}
    const bool valid = IsValidUTF8(bytes);
    try {
        const std::wstring wide = UTF8ToWide(bytes);
        if (!valid || WideToUTF8(wide).View() != bytes) std::abort();
    } catch (const InvalidTextEncoding&) {
        if (valid) std::abort();
    }
    try { UnixPlatform::UTF8ToLocal8Bit(bytes); } catch (const InvalidTextEncoding&) {} catch (const UnixPlatform::WideToMultiByteConvertError&) {}
    try { UnixPlatform::Local8BitToUTF8(bytes); } catch (const UnixPlatform::MultiByteToWideConvertError&) {}
    try {
        const std::uint64_t value = ReadAsciiDecimalNumeral64(bytes);
        if (ReadAsciiDecimalNumeral64(MakeAsciiDecimalNumeral64(value)) != value) std::abort();
    } catch (const NotANumeral&) {} catch (const NumeralTooLarge&) {}
    return 0;
}
