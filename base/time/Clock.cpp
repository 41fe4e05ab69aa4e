#include "base/time/Clock.h"

#include <atomic>
#include <ctime>
#include <limits>

namespace {

// No pinned clock. The pinned value is always whole seconds, so it can never
// collide with this.
constexpr std::int64_t kNotPinned = std::numeric_limits<std::int64_t>::min();

// One word, so a reader on another thread sees either the old or the new pin.
std::atomic<std::int64_t> pinnedNow{kNotPinned};

std::int64_t WholeSeconds(Instant now) {
    std::int64_t micros = now.Microseconds();
    std::int64_t rest = micros % kMicrosecondsPerSecond;
    if (rest < 0) rest += kMicrosecondsPerSecond;
    return micros - rest;
}

}  // namespace

Instant Instant::Now() {
    std::int64_t pinned = pinnedNow.load();
    if (pinned != kNotPinned) return Instant(pinned);
    return Instant(std::int64_t{std::time(nullptr)} * kMicrosecondsPerSecond);
}

ScopedClockOverride::ScopedClockOverride(Instant now) : previous_(pinnedNow.load()) {
    Set(now);
}

ScopedClockOverride::~ScopedClockOverride() {
    pinnedNow.store(previous_);
}

void ScopedClockOverride::Set(Instant now) {
    pinnedNow.store(WholeSeconds(now));
}
