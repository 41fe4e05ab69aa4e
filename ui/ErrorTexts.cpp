#include "ui/ErrorTexts.h"

#include <cstring>

namespace {

// The longest text the handlers pass on: one byte of each buffer is the NUL.
constexpr std::size_t kMaxText = kXErrorTextBuffer - 1;

std::string Prefixed(const char* prefix, const char* text) {
    std::string whole(prefix);
    // strnlen: the text comes from the server or a resource file and is only
    // trusted to be NUL-terminated somewhere.
    whole.append(text, strnlen(text, kMaxText - whole.size()));
    return whole;
}

}  // namespace

std::string XErrorText(const char* serverText) {
    if (serverText == nullptr || serverText[0] == '\0') serverText = "Unknown XError";
    return Prefixed(kXErrorPrefix, serverText);
}

std::string XtErrorText(const char* message) {
    return Prefixed(kXtErrorPrefix, message != nullptr ? message : "");
}

bool IsFatalWarning(const char* name) {
    return name != nullptr && std::strcmp(name, "noFont") == 0;
}

std::string FatalWarningText(const char* name, const char* message) {
    std::string text(name != nullptr ? name : "");
    if (message != nullptr && message[0] != '\0') {
        text += " (";
        text += message;
        text += ")";
    }
    return text;
}
