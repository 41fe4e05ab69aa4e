#pragma once

#include <cstdint>

enum Month : std::uint8_t {
    January = 1, February, March, April, May, June,
    July, August, September, October, November, December
};

enum DayOfWeek : std::uint8_t { Sunday = 0, Monday, Tuesday, Wednesday, Thursday, Friday, Saturday };

// A calendar date in the proleptic Gregorian calendar. The fields may hold a
// date that does not exist (the lenient XML date reader makes such records);
// IsValid() tells. The arithmetic works on any field values: a day or month
// past its end rolls over into the following month or year.
struct DateRecord {
    unsigned day = 0;
    Month month = Month(0);
    std::uint32_t year = 0;

    constexpr DateRecord() noexcept = default;
    constexpr DateRecord(unsigned d, Month m, std::uint32_t y) noexcept : day(d), month(m), year(y) {}

    // The absolute day of 1970-01-01, where instants count from.
    static constexpr std::int64_t kAbsoluteDayOfEpoch = 719162;

    static bool IsLeapYear(std::uint32_t year) noexcept;
    // 0 for a month outside 1 to 12.
    static unsigned DaysInMonth(Month month, std::uint32_t year) noexcept;

    bool IsValid() const noexcept;
    // Days since the start of year 1 (0001-01-01 is 0; dates in year 0 are negative).
    std::int64_t AbsoluteDay() const noexcept;
    // 0 = Sunday to 6 = Saturday.
    ::DayOfWeek DayOfWeek() const noexcept;

    // Throws InvalidDateTimeNegativeYear before the year 0 and NoSuchDate past
    // the largest 32-bit year.
    static DateRecord FromAbsoluteDay(std::int64_t absoluteDay);

    // Whole days; the same errors as FromAbsoluteDay.
    DateRecord& operator+=(std::int64_t days);
    DateRecord& operator-=(std::int64_t days);
    friend DateRecord operator+(DateRecord date, std::int64_t days) { return date += days; }
    friend DateRecord operator-(DateRecord date, std::int64_t days) { return date -= days; }
    friend std::int64_t operator-(const DateRecord& a, const DateRecord& b) noexcept {
        return a.AbsoluteDay() - b.AbsoluteDay();
    }

    friend bool operator==(const DateRecord& a, const DateRecord& b) noexcept {
        return a.day == b.day && a.month == b.month && a.year == b.year;
    }
    friend bool operator!=(const DateRecord& a, const DateRecord& b) noexcept { return !(a == b); }
};
