#pragma once

#include "base/time/DateRecord.h"
#include "base/time/FixedText.h"
#include "base/time/Instant.h"
#include "base/time/TimeErrors.h"
#include "base/time/TimeObject.h"
#include "base/time/TimeOfDay.h"
#include "base/time/TimeZone.h"
#include "base/unicode/UString.h"

// The text of a TimeObject on the wire, "Sun, 15 Nov 2026 00:16:00 +0000",
// and the date and time texts shown to the user.

// At most 31 characters: a piece that does not fit (a year past 9999, an
// offset of 100 hours or more) throws DataOverflow.
AutoUString<UTF8> TimeToText(const TimeObject& time);
AutoUString<UTF8> TimeToText(Instant instant, TimeZone zone);

// Reads any text of the time-text grammar (base/time/TimeLanguage.h), which
// includes everything TimeToText writes. The result keeps the zone the text
// names; a text without one throws NoTimeZone. Also ParsingFailure,
// NoSuchDate, NoSuchTimeOfDay.
TimeObject TextToTime(UStringRef<UTF8> text);
// The same, converted into the given zone; a text without a zone is taken
// as civil time in that zone.
TimeObject TextToTime(UStringRef<UTF8> text, TimeZone zone);

// "Sun, 15 Nov 2026": at most 16 characters, so a year past 9999 throws DataOverflow.
AutoUString<UTF8> DateRecordToText(const DateRecord& date);
// "00:16:00".
AutoUString<UTF8> TimeOfDayToText(const TimeOfDay& time);

// "Sun" to "Sat"; "???" for any other value.
const char* DayOfWeekAbbreviation(DayOfWeek day) noexcept;
// "Jan" to "Dec"; "???" for any other value.
const char* MonthAbbreviation(Month month) noexcept;
