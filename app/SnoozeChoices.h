#pragma once

// The snooze list of the action request dialog: which entries it offers, which
// one is chosen before the user picks, and the seconds that go with the
// choice. Free of X, so the choices can be checked without a display.

#include <cstdint>
#include <vector>

#include "base/time/Instant.h"

struct SnoozeEntry {
    // The English text; a translation file may replace it by this wording.
    const char* text;
    // Negative for the entries counted back from the earliest deadline.
    std::int32_t minutes;
};

// With a deadline pending, the two entries counted back from it come first;
// then always "in 1 minute" to "in 5 days".
std::vector<SnoozeEntry> SnoozeEntries(bool hasDeadline);

// The entry nearest the remembered interval: walk in order while the distance
// |interval - minutes| keeps shrinking, and take the last entry before it
// stops (the earlier one on a tie; the last entry when it never stops).
// -1 for no entries.
int DefaultSnoozeIndex(const std::vector<SnoozeEntry>& entries, TimeInterval remindInterval);

// Whole seconds from `now` until `deadline`, 0 once it has passed and at most
// 4294967295 (what a snooze command carries).
std::uint32_t SecondsUntil(Instant deadline, Instant now);
