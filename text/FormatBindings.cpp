#include "text/FormatBindings.h"

#include <algorithm>

namespace {

bool IsNameByte(unsigned char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

// Bytes of the UTF-8 character that a name starts with: its lead byte and the
// continuation bytes that lead byte announces (fewer if the text is cut short
// or malformed), so "{éclair}" is a name like "{eclair}".
std::size_t FirstCharacterLength(UStringRef<UTF8> name) {
    const auto lead = static_cast<unsigned char>(name.Data()[0]);
    std::size_t announced = 0;
    if (lead >= 0xF0 && lead <= 0xF7) {
        announced = 3;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        announced = 2;
    } else if (lead >= 0xC0 && lead <= 0xDF) {
        announced = 1;
    }
    std::size_t length = 1;
    while (announced > 0 && length < name.Size() &&
           (static_cast<unsigned char>(name.Data()[length]) & 0xC0) == 0x80) {
        ++length;
        --announced;
    }
    return length;
}

// Lowest binding whose name is `name`, or null.
const FormatBinding* FindBinding(UStringRef<UTF8> name, const FormatBinding* first,
                                 const FormatBinding* last) {
    const FormatBinding* found = std::lower_bound(first, last, FormatBinding{name, UStringRef<UTF8>()});
    return found != last && found->name == name ? found : nullptr;
}

}  // namespace

bool IsFormatVariableNameReserved(UStringRef<UTF8> name) {
    if (name.Empty()) {
        throw ImproperFormatVariableName();
    }
    return name.Data()[0] == '_';
}

void CheckFormatVariableName(UStringRef<UTF8> name) {
    if (IsFormatVariableNameReserved(name)) {
        const auto& builtIns = BuiltInFormatVariables();
        if (FindBinding(name, builtIns.data(), builtIns.data() + builtIns.size()) == nullptr) {
            throw UndefinedFormatVariable();
        }
        return;
    }
    // The first character is deliberately left unchecked: "{-x}" and "{ x}"
    // are placeholders, "{x-}" is not.
    for (std::size_t i = FirstCharacterLength(name); i < name.Size(); ++i) {
        if (!IsNameByte(static_cast<unsigned char>(name.Data()[i]))) {
            throw ImproperFormatVariableName();
        }
    }
}

const std::array<FormatBinding, 6>& BuiltInFormatVariables() {
    // Constant-initialised, so there is no first-use race between threads.
    static constexpr std::array<FormatBinding, 6> kBuiltIns = {{
        {UStringRef<UTF8>("_cbrace", 7), UStringRef<UTF8>("}", 1)},
        {UStringRef<UTF8>("_cr", 3), UStringRef<UTF8>("\r", 1)},
        {UStringRef<UTF8>("_crlf", 5), UStringRef<UTF8>("\r\n", 2)},
        {UStringRef<UTF8>("_lf", 3), UStringRef<UTF8>("\n", 1)},
        {UStringRef<UTF8>("_obrace", 7), UStringRef<UTF8>("{", 1)},
        {UStringRef<UTF8>("_tab", 4), UStringRef<UTF8>("\t", 1)},
    }};
    return kBuiltIns;
}

UStringRef<UTF8> FormatExpressionValue(UStringRef<UTF8> name, const FormatBinding* bindings,
                                       std::size_t count) {
    const FormatBinding* found = nullptr;
    if (IsFormatVariableNameReserved(name)) {
        const auto& builtIns = BuiltInFormatVariables();
        found = FindBinding(name, builtIns.data(), builtIns.data() + builtIns.size());
    } else if (count > 0) {
        found = FindBinding(name, bindings, bindings + count);
    }
    if (found == nullptr) {
        throw UndefinedFormatVariable();
    }
    return found->value;
}

UStringRef<UTF8> FormatSegmentValue(const UFormatSegment& segment, const FormatBinding* bindings,
                                    std::size_t count) {
    return segment.isVariable ? FormatExpressionValue(segment.text, bindings, count) : segment.text;
}

void MakeFormatParameterBindings(UStringRef<UTF8> keyText, const UStringRef<UTF8>* arguments,
                                 std::size_t argumentCount, FormatBinding* slots,
                                 std::size_t slotCount) {
    std::size_t used = 0;
    // The walk runs even without arguments: a placeholder in a text that
    // takes none is a caller's mistake worth reporting.
    for (UFormatIterator it(keyText), end = UFormatIterator::End(keyText); it != end; ++it) {
        if (!it->isVariable) {
            continue;
        }
        CheckFormatVariableName(it->text);
        if (IsFormatVariableNameReserved(it->text)) {
            continue;
        }
        if (used == argumentCount || used == slotCount) {
            throw TooManyFormatArguments();
        }
        slots[used] = FormatBinding{it->text, arguments[used]};
        ++used;
    }
    if (used != argumentCount || used != slotCount) {
        throw TooFewFormatArguments();
    }
    std::sort(slots, slots + slotCount);
}
