#include "ui/LocaleCheck.h"

#include <cstring>

#include "app/Settings.h"
#include "text/FormatFile.h"

bool IsUntranslatedLocale(const char* name) {
    return name == nullptr || name[0] == '\0' || std::strcmp(name, "C") == 0 || std::strcmp(name, "POSIX") == 0;
}

void DropTranslationsUnderUntranslatedLocale(const char* ctypeLocale) {
    if (!international || !IsUntranslatedLocale(ctypeLocale)) return;
    international = false;
    // The scopes first: they unlink themselves from the global context and
    // point into the files' bytes.
    m_formatOverrides.clear();
    m_formatFiles.clear();
}
