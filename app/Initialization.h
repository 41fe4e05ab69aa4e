#pragma once

// Applying the client's InitializationInfo: the working directory, the
// delivered files, the translations that suit the user's locale, and the
// initial snooze settings. Once it has succeeded the X application starts.

#include <optional>
#include <string>
#include <vector>

#include "base/Exceptions.h"
#include "base/files/FileLocation.h"
#include "base/files/FileName.h"
#include "protocol/InitializationInfo.h"

// The base directory is missing, not absolute, or the root directory: emptying
// it would wipe the working directory or the whole machine.
class UnsafeBaseDirectory : public DebuggableException {};

// Throws UnsafeBaseDirectory for a location that must never be emptied: none,
// a relative one, or one that is the root directory by identity ("/tmp/..", a
// link to "/"). Only looks, never changes anything.
void RefuseUnsafeBaseDirectory(const FileLocation& base);

// The parts of a locale name that pick translation files: "de_DE.UTF-8" gives
// full "de_DE" and language "de".
struct LocaleNames {
    std::string full;      // the name up to its first "."
    std::string language;  // `full` up to its first "_", or empty without one
};

// Nothing for a null or empty name, "C" and "POSIX": those are the untranslated
// program. Any other name is international, "C.UTF-8" included.
std::optional<LocaleNames> CutLocaleName(const char* localeName);

struct TranslationChoice {
    bool international = false;
    // Top-level support files to load, in load order: a later file wins.
    std::vector<FileName> files;
};

// Which delivered translation files to load under the given LC_CTYPE locale
// name (ignored unless the settings ask for UseLocale): the localized brand
// file, else the plain brand file, then the general file for the locale.
// Throws IllegalFileName or IllegalFileNameLength when a name made from the
// locale breaks the file-name rules.
TranslationChoice ChooseTranslationFiles(const InitializationInfo& info, const char* localeName);

// Recreates the base directory, writes every support file into it, loads the
// chosen translation files and takes over the settings; sets `initialized`
// last. Any failure throws and leaves the program uninitialised, with the
// files written so far left in place.
void ApplyInitializationInfo(const InitializationInfo& info);
