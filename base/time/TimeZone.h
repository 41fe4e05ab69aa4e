#pragma once

#include <cstdint>

// An offset from UTC, positive east of Greenwich, kept both in seconds and in
// microseconds (the form instant arithmetic wants).
class TimeZone {
public:
    constexpr TimeZone() noexcept = default;
    constexpr explicit TimeZone(std::int32_t offsetSeconds) noexcept
        : seconds_(offsetSeconds), micros_(std::int64_t{offsetSeconds} * 1000000) {}

    static constexpr TimeZone UTC() noexcept { return TimeZone(); }
    // The offset that localtime_r reports for the current moment
    // (Instant::Now()). It is used for every conversion, also for instants on
    // the other side of a daylight-saving change. UTC if libc cannot tell.
    static TimeZone Local();

    constexpr std::int32_t Seconds() const noexcept { return seconds_; }
    constexpr std::int64_t Microseconds() const noexcept { return micros_; }

    friend constexpr bool operator==(TimeZone a, TimeZone b) noexcept { return a.seconds_ == b.seconds_; }
    friend constexpr bool operator!=(TimeZone a, TimeZone b) noexcept { return a.seconds_ != b.seconds_; }

private:
    std::int32_t seconds_ = 0;
    std::int64_t micros_ = 0;
};
