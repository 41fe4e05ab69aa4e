#pragma once

// Translations of format texts. A translation file pairs an English format
// text (the key) with its translated format text; a context stacks the sets
// of several files so that the file loaded last is consulted first.

#include <utility>
#include <vector>

#include "base/Exceptions.h"
#include "base/unicode/UString.h"
#include "text/List.h"

// GetOverride was asked for a key the set lacks (callers ask HasOverride first).
class FormatOverrideNotFound : public DebuggableException {};
// A translation file longer than 4294967295 bytes.
class RequiredValueWouldOverflow : public DebuggableException {};

// The (key, translation) pairs of one translation file, sorted by key and then
// by translation. The pairs point into the file's bytes, which the owner of
// the set (a FormatFile) must keep alive.
//
// File layout: UTF-8, one pair per line, lines ended by CR or LF (so CR LF
// leaves an empty line, which is ignored). The key runs to the first tab, the
// translation from after the last tab to the line end. Lines without a tab or
// with an empty key are skipped; an empty translation is kept.
class FormatOverrideSet {
public:
    using Entry = std::pair<UStringRef<UTF8>, UStringRef<UTF8>>;

    FormatOverrideSet() = default;
    explicit FormatOverrideSet(UStringRef<UTF8> fileContents);

    bool HasOverride(UStringRef<UTF8> key) const;
    // When a key repeats, the translation that sorts first bytewise.
    UStringRef<UTF8> GetOverride(UStringRef<UTF8> key) const;

    const std::vector<Entry>& Entries() const noexcept { return entries_; }

private:
    const Entry* Find(UStringRef<UTF8> key) const;

    std::vector<Entry> entries_;
};

class FormatOverrideContext;

// Puts one set at the head of a context for as long as the scope lives.
class FormatOverrideScope : public ListNode {
public:
    FormatOverrideScope(const FormatOverrideSet& overrides, FormatOverrideContext& context) noexcept;

    const FormatOverrideSet& Overrides() const noexcept { return overrides_; }

private:
    const FormatOverrideSet& overrides_;
};

// The scopes that translations are taken from, newest first. Reading takes no
// lock: scopes are added on the main thread before any text is made.
class FormatOverrideContext : public List {
public:
    bool HasOverride(UStringRef<UTF8> key) const;
    // The translation from the newest scope that has one, else `defaultText`.
    UStringRef<UTF8> Override(UStringRef<UTF8> key, UStringRef<UTF8> defaultText) const;

private:
    const FormatOverrideSet* Find(UStringRef<UTF8> key) const;
};

// The process-wide context, created empty on first use.
FormatOverrideContext& GlobalFormatOverrideContext();
