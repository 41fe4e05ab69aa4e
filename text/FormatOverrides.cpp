#include "text/FormatOverrides.h"

#include <algorithm>
#include <cstdint>

FormatOverrideSet::FormatOverrideSet(UStringRef<UTF8> fileContents) {
    // Offsets into a translation file are 32-bit quantities; refuse before
    // touching a single byte.
    if (fileContents.Size() > UINT32_MAX) {
        throw RequiredValueWouldOverflow();
    }
    const char* const data = fileContents.Data();
    const std::size_t size = fileContents.Size();

    // One pass: each line's first and last tab are noted on the way, and the
    // pair is taken when the line ends (at CR, LF or the end of the bytes).
    std::size_t lineStart = 0;
    const char* firstTab = nullptr;
    const char* lastTab = nullptr;
    for (std::size_t i = 0; i <= size; ++i) {
        const char c = i < size ? data[i] : '\n';
        if (c == '\t') {
            if (firstTab == nullptr) {
                firstTab = data + i;
            }
            lastTab = data + i;
            continue;
        }
        if (c != '\r' && c != '\n') {
            continue;
        }
        if (firstTab != nullptr && firstTab != data + lineStart) {
            const char* lineEnd = data + i;
            entries_.emplace_back(
                UStringRef<UTF8>(data + lineStart, static_cast<std::size_t>(firstTab - (data + lineStart))),
                UStringRef<UTF8>(lastTab + 1, static_cast<std::size_t>(lineEnd - (lastTab + 1))));
        }
        lineStart = i + 1;
        firstTab = nullptr;
        lastTab = nullptr;
    }
    std::sort(entries_.begin(), entries_.end());
}

const FormatOverrideSet::Entry* FormatOverrideSet::Find(UStringRef<UTF8> key) const {
    // The empty translation sorts first, so this lands on the lowest pair of
    // the key when the key is present.
    const auto found = std::lower_bound(entries_.begin(), entries_.end(), Entry(key, UStringRef<UTF8>()));
    return found != entries_.end() && found->first == key ? &*found : nullptr;
}

bool FormatOverrideSet::HasOverride(UStringRef<UTF8> key) const {
    return Find(key) != nullptr;
}

UStringRef<UTF8> FormatOverrideSet::GetOverride(UStringRef<UTF8> key) const {
    const Entry* entry = Find(key);
    if (entry == nullptr) {
        throw FormatOverrideNotFound();
    }
    return entry->second;
}

FormatOverrideScope::FormatOverrideScope(const FormatOverrideSet& overrides,
                                         FormatOverrideContext& context) noexcept
    : overrides_(overrides) {
    LinkAtHead(context);
}

const FormatOverrideSet* FormatOverrideContext::Find(UStringRef<UTF8> key) const {
    for (const ListNode* node = Head(); node != nullptr; node = node->Next()) {
        const auto& overrides = static_cast<const FormatOverrideScope*>(node)->Overrides();
        if (overrides.HasOverride(key)) {
            return &overrides;
        }
    }
    return nullptr;
}

bool FormatOverrideContext::HasOverride(UStringRef<UTF8> key) const {
    return Find(key) != nullptr;
}

UStringRef<UTF8> FormatOverrideContext::Override(UStringRef<UTF8> key,
                                                 UStringRef<UTF8> defaultText) const {
    const FormatOverrideSet* overrides = Find(key);
    return overrides != nullptr ? overrides->GetOverride(key) : defaultText;
}

FormatOverrideContext& GlobalFormatOverrideContext() {
    static FormatOverrideContext context;
    return context;
}
