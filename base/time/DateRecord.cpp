#include "base/time/DateRecord.h"

#include <limits>

#include "base/time/TimeErrors.h"

namespace {

constexpr std::int64_t FloorDiv(std::int64_t a, std::int64_t b) noexcept {
    std::int64_t q = a / b;
    return (a % b != 0 && (a < 0) != (b < 0)) ? q - 1 : q;
}

// Days from 1970-01-01 to the given civil date, by the era arithmetic of the
// 400-year Gregorian cycle (146097 days). The month is 1 to 12 here.
constexpr std::int64_t DaysFromCivil(std::int64_t year, unsigned month, std::int64_t day) noexcept {
    year -= month <= 2 ? 1 : 0;
    const std::int64_t era = FloorDiv(year, 400);
    const std::int64_t yearOfEra = year - era * 400;
    const std::int64_t dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
    const std::int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * 146097 + dayOfEra - 719468;
}

constexpr std::int64_t kAbsoluteDayOf1970 = DateRecord::kAbsoluteDayOfEpoch;
static_assert(DaysFromCivil(1, 1, 1) + kAbsoluteDayOf1970 == 0, "0001-01-01 is absolute day 0");
// The first and last days a DateRecord can hold: 0000-01-01 and 4294967295-12-31.
constexpr std::int64_t kFirstAbsoluteDay = -366;
constexpr std::int64_t kLastAbsoluteDay =
    DaysFromCivil(std::int64_t{std::numeric_limits<std::uint32_t>::max()}, 12, 31) + kAbsoluteDayOf1970;

}  // namespace

bool DateRecord::IsLeapYear(std::uint32_t year) noexcept {
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

unsigned DateRecord::DaysInMonth(Month month, std::uint32_t year) noexcept {
    static const unsigned kDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (month < January || month > December) return 0;
    if (month == February && IsLeapYear(year)) return 29;
    return kDays[month - 1];
}

bool DateRecord::IsValid() const noexcept {
    return day >= 1 && day <= DaysInMonth(month, year);
}

std::int64_t DateRecord::AbsoluteDay() const noexcept {
    // Out-of-range months roll into neighbouring years, so that "month 13" of
    // a lenient record still names a definite day.
    const std::int64_t monthIndex = std::int64_t{month} - 1;
    const std::int64_t y = std::int64_t{year} + FloorDiv(monthIndex, 12);
    const unsigned m = static_cast<unsigned>(monthIndex - FloorDiv(monthIndex, 12) * 12) + 1;
    return DaysFromCivil(y, m, std::int64_t{day}) + kAbsoluteDayOf1970;
}

::DayOfWeek DateRecord::DayOfWeek() const noexcept {
    // 0001-01-01 was a Monday.
    const std::int64_t shifted = AbsoluteDay() + 1;
    return static_cast<::DayOfWeek>(shifted - FloorDiv(shifted, 7) * 7);
}

DateRecord DateRecord::FromAbsoluteDay(std::int64_t absoluteDay) {
    if (absoluteDay < kFirstAbsoluteDay) throw InvalidDateTimeNegativeYear();
    if (absoluteDay > kLastAbsoluteDay) throw NoSuchDate();
    // The inverse of DaysFromCivil, on a year that starts in March.
    const std::int64_t z = absoluteDay - kAbsoluteDayOf1970 + 719468;
    const std::int64_t era = FloorDiv(z, 146097);
    const std::int64_t dayOfEra = z - era * 146097;
    const std::int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::int64_t marchMonth = (5 * dayOfYear + 2) / 153;
    const std::int64_t d = dayOfYear - (153 * marchMonth + 2) / 5 + 1;
    const std::int64_t m = marchMonth < 10 ? marchMonth + 3 : marchMonth - 9;
    const std::int64_t y = yearOfEra + era * 400 + (m <= 2 ? 1 : 0);
    return DateRecord(static_cast<unsigned>(d), static_cast<Month>(m), static_cast<std::uint32_t>(y));
}

DateRecord& DateRecord::operator+=(std::int64_t days) {
    std::int64_t target;
    if (__builtin_add_overflow(AbsoluteDay(), days, &target)) {
        if (days < 0) throw InvalidDateTimeNegativeYear();
        throw NoSuchDate();
    }
    return *this = FromAbsoluteDay(target);
}

DateRecord& DateRecord::operator-=(std::int64_t days) {
    if (days == std::numeric_limits<std::int64_t>::min()) throw NoSuchDate();
    return *this += -days;
}
