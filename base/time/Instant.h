#pragma once

#include <cstdint>
#include <limits>

class TimeObject;

namespace time_detail {

// Instants and intervals saturate at the 64-bit limits instead of wrapping:
// a deadline computed from a huge client interval must stay "far away", not
// turn into the distant past.
inline std::int64_t SaturatingAdd(std::int64_t a, std::int64_t b) noexcept {
    std::int64_t sum;
    if (!__builtin_add_overflow(a, b, &sum)) return sum;
    return b > 0 ? std::numeric_limits<std::int64_t>::max() : std::numeric_limits<std::int64_t>::min();
}

inline std::int64_t SaturatingSub(std::int64_t a, std::int64_t b) noexcept {
    std::int64_t difference;
    if (!__builtin_sub_overflow(a, b, &difference)) return difference;
    return b < 0 ? std::numeric_limits<std::int64_t>::max() : std::numeric_limits<std::int64_t>::min();
}

}  // namespace time_detail

constexpr std::int64_t kMicrosecondsPerSecond = 1000000;
constexpr std::int64_t kSecondsPerDay = 86400;
constexpr std::int64_t kMicrosecondsPerDay = kSecondsPerDay * kMicrosecondsPerSecond;

// A span of time in microseconds; the difference of two instants.
class TimeInterval {
public:
    constexpr TimeInterval() noexcept = default;
    constexpr explicit TimeInterval(std::int64_t microseconds) noexcept : micros_(microseconds) {}

    constexpr std::int64_t Microseconds() const noexcept { return micros_; }

    friend TimeInterval operator+(TimeInterval a, TimeInterval b) noexcept {
        return TimeInterval(time_detail::SaturatingAdd(a.micros_, b.micros_));
    }
    friend TimeInterval operator-(TimeInterval a, TimeInterval b) noexcept {
        return TimeInterval(time_detail::SaturatingSub(a.micros_, b.micros_));
    }
    friend TimeInterval operator-(TimeInterval a) noexcept { return TimeInterval(time_detail::SaturatingSub(0, a.micros_)); }

    friend constexpr bool operator==(TimeInterval a, TimeInterval b) noexcept { return a.micros_ == b.micros_; }
    friend constexpr bool operator!=(TimeInterval a, TimeInterval b) noexcept { return a.micros_ != b.micros_; }
    friend constexpr bool operator<(TimeInterval a, TimeInterval b) noexcept { return a.micros_ < b.micros_; }
    friend constexpr bool operator<=(TimeInterval a, TimeInterval b) noexcept { return a.micros_ <= b.micros_; }
    friend constexpr bool operator>(TimeInterval a, TimeInterval b) noexcept { return a.micros_ > b.micros_; }
    friend constexpr bool operator>=(TimeInterval a, TimeInterval b) noexcept { return a.micros_ >= b.micros_; }

private:
    std::int64_t micros_ = 0;
};

// An absolute point in time: microseconds since 1970-01-01 00:00:00 UTC.
class Instant {
public:
    constexpr Instant() noexcept = default;
    constexpr explicit Instant(std::int64_t microsecondsSinceEpoch) noexcept : micros_(microsecondsSinceEpoch) {}
    // The instant a civil time denotes. Throws NoSuchDate when it lies beyond
    // what 64 bits of microseconds can hold (years far past 290000).
    explicit Instant(const TimeObject& time);

    // The current time in whole seconds, from the system clock or from the
    // override a test has set (base/time/Clock.h).
    static Instant Now();

    constexpr std::int64_t Microseconds() const noexcept { return micros_; }

    friend Instant operator+(Instant a, TimeInterval b) noexcept {
        return Instant(time_detail::SaturatingAdd(a.micros_, b.Microseconds()));
    }
    friend Instant operator-(Instant a, TimeInterval b) noexcept {
        return Instant(time_detail::SaturatingSub(a.micros_, b.Microseconds()));
    }
    friend TimeInterval operator-(Instant a, Instant b) noexcept {
        return TimeInterval(time_detail::SaturatingSub(a.micros_, b.micros_));
    }

    friend constexpr bool operator==(Instant a, Instant b) noexcept { return a.micros_ == b.micros_; }
    friend constexpr bool operator!=(Instant a, Instant b) noexcept { return a.micros_ != b.micros_; }
    friend constexpr bool operator<(Instant a, Instant b) noexcept { return a.micros_ < b.micros_; }
    friend constexpr bool operator<=(Instant a, Instant b) noexcept { return a.micros_ <= b.micros_; }
    friend constexpr bool operator>(Instant a, Instant b) noexcept { return a.micros_ > b.micros_; }
    friend constexpr bool operator>=(Instant a, Instant b) noexcept { return a.micros_ >= b.micros_; }

private:
    std::int64_t micros_ = 0;
};
