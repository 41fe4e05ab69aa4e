#pragma once

// The process-wide settings and flags of the program, on the main thread only.

#include "base/files/FileLocation.h"
#include "base/time/Instant.h"

// Set when an InitializationInfo has been applied; never cleared.
extern bool initialized;
// Between a QuietModeStart and a QuietModeEnd.
extern bool inQuietMode;
// The user's locale is neither "C" nor "POSIX" (only looked at with UseLocale).
extern bool international;

// The action dialog is shown again once the clock is past this instant.
extern Instant m_postponedTo;
// The snooze length last chosen or received.
extern TimeInterval m_remindInterval;
// Whether the action dialog offers snoozing.
extern bool m_snoozable;
// Where the client's support files are written.
extern FileLocation m_baseDirectory;
