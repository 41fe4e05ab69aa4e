#include "ui/ControlLiteral.h"

#include <cstring>
#include <string_view>

#include "text/UFormat.h"

namespace {

ControlString Owned(std::string_view text) {
    ControlString owned(new char[text.size() + 1]);
    if (!text.empty()) std::memcpy(owned.get(), text.data(), text.size());
    owned[text.size()] = '\0';
    return owned;
}

}  // namespace

ControlString ControlLiteral(const char* text) {
    const UStringRef<UTF8> literal(text != nullptr ? text : "");
    return ControlLiteral(MakeLocalString(FormatPlusArguments(UFormat(literal, literal))));
}

ControlString ControlLiteral(AutoNullTerminated<char> text) {
    return Owned(text.View());
}

ControlString FunkyControlLiteral(const char* text) {
    return Owned(text != nullptr ? std::string_view(text) : std::string_view());
}
