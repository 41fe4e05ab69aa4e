#include "app/Settings.h"

bool initialized = false;
bool inQuietMode = false;
bool international = false;

Instant m_postponedTo;
TimeInterval m_remindInterval;
bool m_snoozable = true;
FileLocation m_baseDirectory;
