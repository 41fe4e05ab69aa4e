#pragma once

// Placeholder names and their values. The caller's arguments are bound by
// position to the names of the English (key) text; the effective text, which
// may be a translation, then looks each name up. That is what lets a
// translation reorder, repeat or leave out placeholders.

#include <array>
#include <cstddef>

#include "base/Exceptions.h"
#include "base/unicode/UString.h"
#include "text/UFormatIterator.h"

// "{}", or a key-text name with a character other than an ASCII letter, digit
// or "_" after its first character.
class ImproperFormatVariableName : public DebuggableException {};
// A "_" name that is not built in, or a name the key text does not bind.
class UndefinedFormatVariable : public DebuggableException {};
// The key text has more placeholders than the caller gave arguments.
class TooManyFormatArguments : public DebuggableException {};
// The key text has fewer placeholders than the caller gave arguments.
class TooFewFormatArguments : public DebuggableException {};

// One bound placeholder. Bindings are kept sorted by name, then value.
struct FormatBinding {
    UStringRef<UTF8> name;
    UStringRef<UTF8> value;

    friend bool operator<(const FormatBinding& a, const FormatBinding& b) noexcept {
        return a.name < b.name || (a.name == b.name && a.value < b.value);
    }
};

// True for the names reserved to the built-in variables (first byte "_").
bool IsFormatVariableNameReserved(UStringRef<UTF8> name);

// Validates a placeholder name of the key text.
void CheckFormatVariableName(UStringRef<UTF8> name);

// The six built-in variables ("_cbrace", "_cr", "_crlf", "_lf", "_obrace",
// "_tab"), sorted by name.
const std::array<FormatBinding, 6>& BuiltInFormatVariables();

// The value of a placeholder: a reserved name from the built-in table, any
// other from the sorted bindings (the first of equal names).
UStringRef<UTF8> FormatExpressionValue(UStringRef<UTF8> name, const FormatBinding* bindings,
                                       std::size_t count);

// A literal's own text, or the value of a variable.
UStringRef<UTF8> FormatSegmentValue(const UFormatSegment& segment, const FormatBinding* bindings,
                                    std::size_t count);

// Binds the arguments, in order, to the non-built-in placeholders of the key
// text, filling exactly `slotCount` slots, then sorts the slots. The counts
// are separate so that no caller can overrun its slots.
void MakeFormatParameterBindings(UStringRef<UTF8> keyText, const UStringRef<UTF8>* arguments,
                                 std::size_t argumentCount, FormatBinding* slots,
                                 std::size_t slotCount);

template <std::size_t N>
void MakeFormatParameterBindings(UStringRef<UTF8> keyText,
                                 const std::array<UStringRef<UTF8>, N>& arguments,
                                 std::array<FormatBinding, N>& slots) {
    MakeFormatParameterBindings(keyText, arguments.data(), N, slots.data(), N);
}
