#include "base/unicode/LocaleInfo.h"

#include <langinfo.h>

namespace UnixPlatform {

std::string LocaleCodeset() {
    const char* name = nl_langinfo(CODESET);
    return name ? std::string(name) : std::string();
}

bool LocaleIsUTF8() {
    std::string folded;
    for (char c : LocaleCodeset()) {
        if (c == '-' || c == '_') continue;
        folded += (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return folded == "utf8";
}

}  // namespace UnixPlatform
