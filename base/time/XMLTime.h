#pragma once

#include "base/time/DateRecord.h"
#include "base/time/Instant.h"
#include "base/time/TimeErrors.h"
#include "base/time/TimeOfDay.h"
#include "base/unicode/UString.h"

// The XML Schema-style texts in which the messages carry times. The date-time
// forms are always written in the current local offset (TimeZone::Local()).

// "2013-05-01T12:00:00+02:00"; a fraction of a second is not written.
AutoUString<UTF8> InstantToXMLDateTime(Instant instant);
// Throws InvalidDateTimeNegativeYear or InvalidDateTimeString.
Instant XMLDateTimeToInstant(UStringRef<UTF8> text);

// "PT1M30S", "P1DT0.000001S", "-PT1H", "PT0S".
AutoUString<UTF8> TimeIntervalToXMLDuration(TimeInterval interval);
// Throws ExceptionPL with one of the contract's three messages.
TimeInterval XMLDurationToTimeInterval(UStringRef<UTF8> text);

// "0987-05-01": the year in at least four digits.
AutoUString<UTF8> DateRecordToXMLDate(const DateRecord& date);
// Lenient and positional; never throws. Missing or non-numeric fields read as 0.
DateRecord XMLDateToDateRecord(UStringRef<UTF8> text);

// "09:05:00".
AutoUString<UTF8> TimeOfDayToXMLTime(const TimeOfDay& time);
