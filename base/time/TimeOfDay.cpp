#include "base/time/TimeOfDay.h"

TimeOfDay TimeOfDay::FromSecondsOfDay(std::int64_t seconds) noexcept {
    std::int64_t inDay = seconds % 86400;
    if (inDay < 0) inDay += 86400;
    return TimeOfDay(static_cast<std::uint8_t>(inDay / 3600), static_cast<std::uint8_t>(inDay / 60 % 60),
                     static_cast<std::uint8_t>(inDay % 60));
}

TimeOfDay& TimeOfDay::operator+=(std::int64_t seconds) noexcept {
    return *this = FromSecondsOfDay(SecondsOfDay() + seconds % 86400);
}
