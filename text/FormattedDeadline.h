#pragma once

// How long until a deadline, in words: "3 days", "2 hours", "12 minutes",
// "Now", a countdown such as "1 minute, 30 seconds" for an action that will
// run by itself, or "Overdue". Each wording is its own translatable text.

#include "base/time/Instant.h"
#include "base/unicode/UString.h"

// `forceRun`: the action runs by itself at the deadline, so the last five
// minutes count down and a passed deadline means it is running rather than
// overdue. `fromNow` wraps the time as "{time} from now" (not "Now",
// "Overdue" or the texts for a passed deadline).
AutoUString<UTF8> FormattedDeadline(TimeInterval remaining, bool forceRun, bool fromNow);

// The same for deadline - now.
AutoUString<UTF8> FormattedDeadline(Instant deadline, Instant now, bool forceRun, bool fromNow);
