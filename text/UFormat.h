#pragma once

// Making a text: UFormat picks the effective text for a key (its translation,
// or the English default), the arguments are bound to the key's placeholders,
// and the effective text is rendered with them.
//
//   MakeUString(FormatPlusArguments(UFormat(text, text), count))

#include <array>
#include <cstddef>

#include "base/unicode/AutoNullTerminated.h"
#include "base/unicode/Local8Bit.h"
#include "base/unicode/UString.h"
#include "text/FormatBindings.h"
#include "text/FormatOverrides.h"
#include "text/UFormatIterator.h"

// The key text (English, the source of the placeholder names) and the
// effective text (its translation, or the default).
struct FormatPair {
    UStringRef<UTF8> key;
    UStringRef<UTF8> effective;
};

FormatPair UFormat(UStringRef<UTF8> key, UStringRef<UTF8> defaultText,
                   const FormatOverrideContext& context);
// Under GlobalFormatOverrideContext().
FormatPair UFormat(UStringRef<UTF8> key, UStringRef<UTF8> defaultText);

// A format and the N arguments for the placeholders of its key text, in order.
template <std::size_t N>
struct FormatPlusArguments {
    template <class... Arguments>
    explicit FormatPlusArguments(const FormatPair& pair, const Arguments&... args)
        : format(pair), arguments{{UStringRef<UTF8>(args)...}} {
        static_assert(sizeof...(Arguments) == N, "one argument per slot");
    }

    FormatPair format;
    std::array<UStringRef<UTF8>, N> arguments;
};

template <class... Arguments>
FormatPlusArguments(const FormatPair&, const Arguments&...) -> FormatPlusArguments<sizeof...(Arguments)>;

// Walks the effective text yielding the value of each segment.
class FormattedStringIterator {
public:
    FormattedStringIterator(UFormatIterator segments, const FormatBinding* bindings, std::size_t count)
        : segments_(segments), bindings_(bindings), count_(count) {}

    UStringRef<UTF8> operator*() const { return FormatSegmentValue(*segments_, bindings_, count_); }
    FormattedStringIterator& operator++() {
        ++segments_;
        return *this;
    }
    friend bool operator==(const FormattedStringIterator& a, const FormattedStringIterator& b) noexcept {
        return a.segments_ == b.segments_;
    }
    friend bool operator!=(const FormattedStringIterator& a, const FormattedStringIterator& b) noexcept {
        return !(a == b);
    }

private:
    UFormatIterator segments_;
    const FormatBinding* bindings_;
    std::size_t count_;
};

// The effective text with its bindings made from the key text. Its iterators
// point into it, so it stays where it is while they are in use.
template <std::size_t N>
class FormattedString {
public:
    explicit FormattedString(const FormatPlusArguments<N>& format) : text_(format.format.effective) {
        MakeFormatParameterBindings(format.format.key, format.arguments, bindings_);
    }
    FormattedString(const FormattedString&) = delete;
    FormattedString& operator=(const FormattedString&) = delete;

    UStringRef<UTF8> Text() const noexcept { return text_; }
    const std::array<FormatBinding, N>& Bindings() const noexcept { return bindings_; }

    FormattedStringIterator begin() const {
        return FormattedStringIterator(UFormatIterator(text_), bindings_.data(), N);
    }
    FormattedStringIterator end() const {
        return FormattedStringIterator(UFormatIterator::End(text_), bindings_.data(), N);
    }

private:
    UStringRef<UTF8> text_;
    std::array<FormatBinding, N> bindings_{};
};

// Concatenates the segment values. Values go in as they are: they are never
// scanned for placeholders themselves.
AutoUString<UTF8> MakeUString(FormattedStringIterator first, FormattedStringIterator last);

template <std::size_t N>
AutoUString<UTF8> MakeUString(const FormatPlusArguments<N>& format) {
    const FormattedString<N> formatted(format);
    return MakeUString(formatted.begin(), formatted.end());
}

// The rendered text in the locale's encoding, NUL-terminated. A character the
// locale cannot show throws UnixPlatform::WideToMultiByteConvertError; nothing
// is substituted.
template <std::size_t N>
AutoNullTerminated<char> MakeLocalString(const FormatPlusArguments<N>& format) {
    return UnixPlatform::MakeLocalNullTerminated(MakeUString(format));
}

// The form the dialogs hand to the widgets; on this platform the local form.
template <std::size_t N>
AutoNullTerminated<char> MakePlatformString(const FormatPlusArguments<N>& format) {
    return MakeLocalString(format);
}
