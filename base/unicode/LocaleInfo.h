#pragma once

// Facts about the current LC_CTYPE locale, read through nl_langinfo.

#include <string>

namespace UnixPlatform {

// The name of the locale's character encoding, as libc reports it (for
// example "UTF-8" or "ANSI_X3.4-1968").
std::string LocaleCodeset();

// Whether the locale's encoding is UTF-8, so that Local8Bit text and UTF-8
// text are the same bytes. Spellings differ between systems ("UTF-8",
// "utf8"), so the name is compared without case and hyphens.
bool LocaleIsUTF8();

}  // namespace UnixPlatform
