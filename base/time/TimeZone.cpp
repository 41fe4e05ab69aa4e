#include "base/time/TimeZone.h"

#include <ctime>

#include "base/time/Instant.h"

TimeZone TimeZone::Local() {
    std::time_t now = static_cast<std::time_t>(Instant::Now().Microseconds() / kMicrosecondsPerSecond);
    std::tm local{};
    if (localtime_r(&now, &local) == nullptr) return TimeZone::UTC();
    // Real offsets stay within a day; anything else is a broken zone file.
    long offset = local.tm_gmtoff;
    if (offset <= -kSecondsPerDay || offset >= kSecondsPerDay) return TimeZone::UTC();
    return TimeZone(static_cast<std::int32_t>(offset));
}
