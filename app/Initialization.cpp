#include "app/Initialization.h"

#include <clocale>
#include <cstring>
#include <sys/stat.h>

#include "app/Settings.h"
#include "base/files/FileLocation.h"
#include "base/files/FileOperations.h"
#include "base/unicode/Base64.h"
#include "base/time/Instant.h"
#include "base/time/TimeObject.h"
#include "text/FormatFile.h"

namespace UnixPlatform {
namespace {

// Compared by identity rather than by text, so "/tmp/.." and a link to "/"
// are caught as well. A path that cannot be looked at is not the root.
bool IsRootDirectory(const FileLocation& directory) {
    struct stat root;
    struct stat here;
    return ::stat("/", &root) == 0 && ::stat(directory.Path().c_str(), &here) == 0 &&
           root.st_dev == here.st_dev && root.st_ino == here.st_ino;
}

}  // namespace
}  // namespace UnixPlatform

namespace {

// A fresh directory is private to the user: the delivered pages and
// translations are nobody else's business. Parents are ordinary directories.
constexpr mode_t kBaseDirectoryMode = 0700;

void RecreateBaseDirectory(const FileLocation& base) {
    if (DirectoryExists(base)) {
        DeleteContents(base);
    } else {
        CreateDirectoryTree(base, kBaseDirectoryMode);
    }
}

void WriteSupportFiles(const InitializationInfo& info) {
    for (const FileTransfer& file : info.supportFiles) {
        // The sub-folder is deliberately not used: every file lands in the base
        // directory itself, and a later file of the same name replaces an
        // earlier one. An empty name throws IllegalFileName at the join.
        const FileLocation target = info.baseDirectory / file.fileName;
        WriteWholeFile(target, Base64Decoder::Decode(file.content));
    }
}

}  // namespace

// The base directory is emptied before anything is written into it, so it is
// checked first. Without a path, or with a relative one, the emptying would
// reach whatever directory the process happens to run in.
void RefuseUnsafeBaseDirectory(const FileLocation& base) {
    if (!base.HasPath() || base.Path().front() != '/' || base.Path() == "/" ||
        UnixPlatform::IsRootDirectory(base)) {
        throw UnsafeBaseDirectory();
    }
}

std::optional<LocaleNames> CutLocaleName(const char* localeName) {
    if (localeName == nullptr || *localeName == '\0' || std::strcmp(localeName, "C") == 0 ||
        std::strcmp(localeName, "POSIX") == 0) {
        return std::nullopt;
    }
    const std::string name(localeName);
    LocaleNames names;
    names.full = name.substr(0, name.find('.'));
    const std::size_t underscore = names.full.find('_');
    if (underscore != std::string::npos) {
        names.language = names.full.substr(0, underscore);
    }
    return names;
}

TranslationChoice ChooseTranslationFiles(const InitializationInfo& info, const char* localeName) {
    TranslationChoice choice;
    NullOrConstRef<FileTransfer> brand;
    NullOrConstRef<FileTransfer> general;
    std::optional<LocaleNames> names;
    if (info.settings.useLocale) {
        names = CutLocaleName(localeName);
    }
    if (names) {
        choice.international = true;
        const FileName full(names->full);
        const FileName language(names->language);
        brand = info.LocalizedBrandTranslation(full, language);
        general = info.GeneralLocalization(full, language);
    }
    if (!brand) {
        brand = info.BrandTranslation();
    }
    if (brand) {
        choice.files.push_back(brand->fileName);
    }
    // Last, so that the general file's wording wins where both translate a text.
    if (general) {
        choice.files.push_back(general->fileName);
    }
    return choice;
}

void ApplyInitializationInfo(const InitializationInfo& info) {
    const FileLocation& base = info.baseDirectory;
    RefuseUnsafeBaseDirectory(base);
    // Converted before the directory is touched: a time beyond what an
    // Instant holds then fails without side effects.
    std::optional<Instant> postponedTo;
    if (info.settings.remindTime) {
        postponedTo = Instant(*info.settings.remindTime);
    }

    m_baseDirectory = base;
    RecreateBaseDirectory(base);
    WriteSupportFiles(info);

    // Only asked for when wanted: setlocale changes the whole process.
    const char* localeName = info.settings.useLocale ? std::setlocale(LC_CTYPE, "") : nullptr;
    const TranslationChoice choice = ChooseTranslationFiles(info, localeName);
    international = choice.international;
    for (const FileName& name : choice.files) {
        AddTranslationFile(base / name);
    }

    if (postponedTo) {
        m_postponedTo = *postponedTo;
    }
    m_remindInterval = info.settings.remindInterval;
    m_snoozable = info.settings.allowSnooze;
    initialized = true;
}
