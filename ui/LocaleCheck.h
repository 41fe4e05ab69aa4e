#pragma once

// Whether the locale the display opened under can show translated texts.

// True for a character-type locale under which every text stays in the
// built-in English and the 8-bit encoding: none at all, "", "C" and "POSIX".
// Only these exact names: "C.UTF-8" is a locale with a real encoding.
bool IsUntranslatedLocale(const char* name);

// While `international` is set and `ctypeLocale` is untranslated: clears
// `international` and drops every loaded translation, so no dialog shows a
// text the locale cannot encode. Otherwise changes nothing.
void DropTranslationsUnderUntranslatedLocale(const char* ctypeLocale);
