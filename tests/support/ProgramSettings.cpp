#include "tests/support/ProgramSettings.h"

#include <clocale>

#include "app/Settings.h"
#include "text/FormatFile.h"

void ResetProgramSettings() {
    initialized = inQuietMode = international = false;
    m_postponedTo = Instant();
    m_remindInterval = TimeInterval();
    m_snoozable = true;
    m_baseDirectory = FileLocation();
    // The scopes first: they refer to the files' texts.
    m_formatOverrides.clear();
    m_formatFiles.clear();
    std::setlocale(LC_ALL, "C");
}
