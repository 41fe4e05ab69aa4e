#include "base/time/TimeObject.h"

#include "base/time/TimeErrors.h"

namespace {

constexpr std::int64_t kAbsoluteDayOf1970 = DateRecord::kAbsoluteDayOfEpoch;

constexpr std::int64_t FloorDiv(std::int64_t a, std::int64_t b) noexcept {
    std::int64_t q = a / b;
    return (a % b != 0 && (a < 0) != (b < 0)) ? q - 1 : q;
}

}  // namespace

TimeObject::TimeObject() noexcept : date_(1, January, 1970) {}

TimeObject::TimeObject(const DateRecord& date, const TimeOfDay& time, TimeZone zone) noexcept
    : date_(date), time_(time), zone_(zone) {}

TimeObject::TimeObject(Instant instant, TimeZone zone) : TimeObject() {
    // Division in C++ truncates toward zero, which is the rule for the fraction.
    AddSeconds(instant.Microseconds() / kMicrosecondsPerSecond);
    SetTimeZone(zone);
}

void TimeObject::SetTimeZone(TimeZone zone) {
    AddSeconds(std::int64_t{zone.Seconds()} - zone_.Seconds());
    zone_ = zone;
}

TimeObject& TimeObject::AddSeconds(std::int64_t seconds) {
    std::int64_t target;
    if (__builtin_add_overflow(CivilSeconds(), seconds, &target)) {
        if (seconds < 0) throw InvalidDateTimeNegativeYear();
        throw NoSuchDate();
    }
    SetCivilSeconds(target);
    return *this;
}

std::int64_t TimeObject::CivilSeconds() const noexcept {
    // At most about 1.6e12 days either way, so the product stays far inside 64 bits.
    return (date_.AbsoluteDay() - kAbsoluteDayOf1970) * kSecondsPerDay + time_.SecondsOfDay();
}

void TimeObject::SetCivilSeconds(std::int64_t seconds) {
    const std::int64_t days = FloorDiv(seconds, kSecondsPerDay);
    date_ = DateRecord::FromAbsoluteDay(days + kAbsoluteDayOf1970);
    time_ = TimeOfDay::FromSecondsOfDay(seconds - days * kSecondsPerDay);
}

std::int64_t TimeObject::SecondsSinceEpoch() const noexcept {
    return CivilSeconds() - zone_.Seconds();
}

Instant::Instant(const TimeObject& time) {
    const std::int64_t days = time.Date().AbsoluteDay() - kAbsoluteDayOf1970;
    std::int64_t micros;
    if (__builtin_mul_overflow(days, kMicrosecondsPerDay, &micros) ||
        __builtin_add_overflow(micros, std::int64_t{time.Time().SecondsOfDay()} * kMicrosecondsPerSecond, &micros) ||
        __builtin_sub_overflow(micros, time.Zone().Microseconds(), &micros)) {
        throw NoSuchDate();
    }
    micros_ = micros;
}
