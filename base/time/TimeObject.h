#pragma once

#include <cstdint>

#include "base/time/DateRecord.h"
#include "base/time/Instant.h"
#include "base/time/TimeOfDay.h"
#include "base/time/TimeZone.h"

// A civil date and time in whole seconds, as seen in one zone. Two objects
// compare by the instant they denote, so the same moment in two zones is equal.
class TimeObject {
public:
    // 1970-01-01 00:00:00 at offset 0.
    TimeObject() noexcept;
    TimeObject(const DateRecord& date, const TimeOfDay& time, TimeZone zone) noexcept;
    // The instant in whole seconds, the fraction cut off toward zero (so
    // -1.5 s becomes 23:59:59 of 1969-12-31), seen in the zone.
    TimeObject(Instant instant, TimeZone zone);

    const DateRecord& Date() const noexcept { return date_; }
    const TimeOfDay& Time() const noexcept { return time_; }
    TimeZone Zone() const noexcept { return zone_; }

    // Keeps the instant and moves the civil fields by the change of offset.
    void SetTimeZone(TimeZone zone);
    // Moves the civil fields; throws InvalidDateTimeNegativeYear or NoSuchDate
    // when the result leaves the years 0 to 4294967295.
    TimeObject& AddSeconds(std::int64_t seconds);

    // Seconds since 1970-01-01 00:00:00 UTC. Exact for every year a
    // DateRecord can hold, unlike the microseconds of Instant.
    std::int64_t SecondsSinceEpoch() const noexcept;

    friend bool operator==(const TimeObject& a, const TimeObject& b) noexcept {
        return a.SecondsSinceEpoch() == b.SecondsSinceEpoch();
    }
    friend bool operator!=(const TimeObject& a, const TimeObject& b) noexcept { return !(a == b); }
    friend bool operator<(const TimeObject& a, const TimeObject& b) noexcept {
        return a.SecondsSinceEpoch() < b.SecondsSinceEpoch();
    }
    friend bool operator<=(const TimeObject& a, const TimeObject& b) noexcept { return !(b < a); }
    friend bool operator>(const TimeObject& a, const TimeObject& b) noexcept { return b < a; }
    friend bool operator>=(const TimeObject& a, const TimeObject& b) noexcept { return !(a < b); }

private:
    // Seconds since 1970-01-01 00:00:00 of the civil fields, ignoring the zone.
    std::int64_t CivilSeconds() const noexcept;
    void SetCivilSeconds(std::int64_t seconds);

    DateRecord date_;
    TimeOfDay time_;
    TimeZone zone_;
};
