#pragma once

#include "base/time/Instant.h"

// The one way into the clock. Instant::Now() reads the system clock unless a
// test has pinned it here; nothing else in the program asks the system for
// the time. TimeZone::Local() asks Instant::Now() which moment's offset to use,
// so pinning the clock also pins which side of a daylight-saving change counts.
//
// While an override lives, Instant::Now() returns its instant, rounded down to
// whole seconds like the system clock. Overrides nest: the destructor restores
// what was there before.
class ScopedClockOverride {
public:
    explicit ScopedClockOverride(Instant now);
    ~ScopedClockOverride();

    ScopedClockOverride(const ScopedClockOverride&) = delete;
    ScopedClockOverride& operator=(const ScopedClockOverride&) = delete;

    // Moves the pinned clock, for a test that lets time pass.
    void Set(Instant now);

private:
    std::int64_t previous_;
};
