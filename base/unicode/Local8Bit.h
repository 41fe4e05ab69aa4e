#pragma once

// Text in the locale's multibyte encoding (Local8Bit, held in std::string) and
// its conversion to and from UTF-8. Both directions go through wide characters
// with libc under the current LC_CTYPE, so the result follows setlocale.

#include <string>
#include <string_view>

#include "base/Exceptions.h"
#include "base/unicode/AutoNullTerminated.h"
#include "base/unicode/UString.h"

namespace UnixPlatform {

// A character that the locale's encoding cannot show. Nothing is substituted:
// the user must never see a text silently changed.
class WideToMultiByteConvertError : public DebuggableException {};

// Bytes that are not valid in the locale's encoding.
class MultiByteToWideConvertError : public DebuggableException {};

// UTF-8 to the locale's encoding. Throws InvalidTextEncoding for malformed
// UTF-8 and WideToMultiByteConvertError for a character the locale lacks.
// Embedded NUL characters are kept.
std::string UTF8ToLocal8Bit(UStringRef<UTF8> text);

// The locale's encoding to UTF-8; throws MultiByteToWideConvertError.
AutoUString<UTF8> Local8BitToUTF8(std::string_view text);

// UTF-8 made ready for a widget: in the locale's encoding, NUL-terminated.
AutoNullTerminated<char> MakeLocalNullTerminated(UStringRef<UTF8> text);

}  // namespace UnixPlatform
