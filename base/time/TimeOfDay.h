#pragma once

#include <cstdint>

// A time on the 24-hour clock in whole seconds. Valid when each field is in range.
struct TimeOfDay {
    std::uint8_t hour = 0;
    std::uint8_t minute = 0;
    std::uint8_t second = 0;

    constexpr TimeOfDay() noexcept = default;
    constexpr TimeOfDay(std::uint8_t h, std::uint8_t m, std::uint8_t s) noexcept : hour(h), minute(m), second(s) {}

    constexpr bool IsValid() const noexcept { return hour < 24 && minute < 60 && second < 60; }
    constexpr std::int32_t SecondsOfDay() const noexcept { return hour * 3600 + minute * 60 + second; }
    // Any count of seconds, taken modulo one day (negative counts count back from midnight).
    static TimeOfDay FromSecondsOfDay(std::int64_t seconds) noexcept;

    // Moves within the day, wrapping round midnight.
    TimeOfDay& operator+=(std::int64_t seconds) noexcept;
    TimeOfDay& operator-=(std::int64_t seconds) noexcept { return *this += -(seconds % 86400); }

    friend constexpr bool operator==(TimeOfDay a, TimeOfDay b) noexcept {
        return a.hour == b.hour && a.minute == b.minute && a.second == b.second;
    }
    friend constexpr bool operator!=(TimeOfDay a, TimeOfDay b) noexcept { return !(a == b); }
};
