#pragma once

// Loaded translation files. Each file's bytes are kept for the life of the
// process, because its override set points into them, and every set joins the
// global context, so the file loaded last is consulted first.

#include <memory>
#include <string>
#include <vector>

#include "base/files/FileLocation.h"
#include "base/unicode/UString.h"
#include "text/FormatOverrides.h"

// One translation file: its bytes and the pairs parsed from them. Neither
// copied nor moved, since the pairs point into the bytes it owns.
class FormatFile {
public:
    // Reads the whole file (the file layer's errors pass through) and parses it.
    explicit FormatFile(const FileLocation& location);
    // Parses bytes already in memory.
    explicit FormatFile(std::string bytes);
    FormatFile(const FormatFile&) = delete;
    FormatFile& operator=(const FormatFile&) = delete;

    UStringRef<UTF8> FileContents() const noexcept { return UStringRef<UTF8>(bytes_); }
    const FormatOverrideSet& Overrides() const noexcept { return overrides_; }

private:
    const std::string bytes_;
    const FormatOverrideSet overrides_;
};

// Every file loaded so far, and the scope that puts each into the global
// context, in load order. Nothing is ever removed: translations last until exit.
extern std::vector<std::shared_ptr<FormatFile>> m_formatFiles;
extern std::vector<std::shared_ptr<FormatOverrideScope>> m_formatOverrides;

// Loads one translation file into the global context, ahead of those loaded
// before. On the main thread, before any text is made. A file that cannot be
// read throws the file layer's error and leaves the loaded ones as they are.
void AddTranslationFile(const FileLocation& location);
