#pragma once

// Numbers, dates, times and day names as the user reads them. Every fixed
// word passes through the format layer, so a translation file can replace it.

#include <cstdint>

#include "base/time/DateRecord.h"
#include "base/time/Instant.h"
#include "base/time/TimeOfDay.h"
#include "base/unicode/UString.h"

namespace UnixPlatform {

// Plain decimal digits: no grouping, sign or padding.
AutoUString<UTF8> FormattedNumber(std::uint64_t number);

// "Sun, 15 Nov 2026". A year past 9999 throws DataOverflow.
AutoUString<UTF8> FormattedDateRecord(const DateRecord& date);

// "00:16:00": 24-hour clock, two digits per field.
AutoUString<UTF8> FormattedTimeOfDay(const TimeOfDay& time);

// The instant in the local zone as "{date} {time}".
AutoUString<UTF8> FormattedLocalTime(Instant instant);

// "Sunday" to "Saturday" and "Sun" to "Sat"; "???" for any other value.
AutoUString<UTF8> FormattedLongDayOfWeek(DayOfWeek day);
AutoUString<UTF8> FormattedShortDayOfWeek(DayOfWeek day);

}  // namespace UnixPlatform
