#include "app/SnoozeChoices.h"

#include <algorithm>
#include <limits>

namespace {

constexpr SnoozeEntry kBeforeDeadline[] = {
    {"15 minutes before deadline", -15},
    {"5 minutes before deadline", -5},
};

constexpr SnoozeEntry kFromNow[] = {
    {"in 1 minute", 1},      {"in 5 minutes", 5},    {"in 10 minutes", 10}, {"in 15 minutes", 15},
    {"in 30 minutes", 30},   {"in 45 minutes", 45},  {"in 1 hour", 60},     {"in 2 hours", 120},
    {"in 4 hours", 240},     {"in 6 hours", 360},    {"in 8 hours", 480},   {"in 16 hours", 960},
    {"in 1 day", 1440},      {"in 2 days", 2880},    {"in 3 days", 4320},   {"in 4 days", 5760},
    {"in 5 days", 7200},
};

constexpr std::int64_t kMicrosecondsPerMinute = 60 * kMicrosecondsPerSecond;

// Wide enough that no remembered interval can overflow the distance.
__int128 Distance(TimeInterval interval, std::int32_t minutes) {
    const __int128 difference = __int128{interval.Microseconds()} - __int128{minutes} * kMicrosecondsPerMinute;
    return difference < 0 ? -difference : difference;
}

}  // namespace

std::vector<SnoozeEntry> SnoozeEntries(bool hasDeadline) {
    std::vector<SnoozeEntry> entries;
    if (hasDeadline) entries.assign(std::begin(kBeforeDeadline), std::end(kBeforeDeadline));
    entries.insert(entries.end(), std::begin(kFromNow), std::end(kFromNow));
    return entries;
}

int DefaultSnoozeIndex(const std::vector<SnoozeEntry>& entries, TimeInterval remindInterval) {
    if (entries.empty()) return -1;
    for (std::size_t i = 1; i < entries.size(); ++i) {
        if (Distance(remindInterval, entries[i].minutes) >= Distance(remindInterval, entries[i - 1].minutes)) {
            return static_cast<int>(i - 1);
        }
    }
    return static_cast<int>(entries.size() - 1);
}

std::uint32_t SecondsUntil(Instant deadline, Instant now) {
    if (deadline <= now) return 0;
    const std::int64_t seconds = (deadline - now).Microseconds() / kMicrosecondsPerSecond;
    return static_cast<std::uint32_t>(std::min<std::int64_t>(seconds, std::numeric_limits<std::uint32_t>::max()));
}
