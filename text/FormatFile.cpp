#include "text/FormatFile.h"

#include <utility>

#include "base/files/FileOperations.h"

// Declared in this order so that the scopes go before the files they refer to.
std::vector<std::shared_ptr<FormatFile>> m_formatFiles;
std::vector<std::shared_ptr<FormatOverrideScope>> m_formatOverrides;

FormatFile::FormatFile(const FileLocation& location) : FormatFile(ReadWholeFile(location)) {}

FormatFile::FormatFile(std::string bytes) : bytes_(std::move(bytes)), overrides_(UStringRef<UTF8>(bytes_)) {}

void AddTranslationFile(const FileLocation& location) {
    auto file = std::make_shared<FormatFile>(location);
    // Room first, so that once the scope is linked nothing can fail.
    m_formatFiles.reserve(m_formatFiles.size() + 1);
    m_formatOverrides.reserve(m_formatOverrides.size() + 1);
    auto scope = std::make_shared<FormatOverrideScope>(file->Overrides(), GlobalFormatOverrideContext());
    m_formatFiles.push_back(std::move(file));
    m_formatOverrides.push_back(std::move(scope));
}
