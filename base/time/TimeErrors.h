#pragma once

#include "base/Exceptions.h"

// The errors of the time values and their texts. None carries text: the type
// says what went wrong.

// A date-time text that starts with "-", or a computation that would land
// before the year 0.
class InvalidDateTimeNegativeYear : public DebuggableException {};
// A date-time text that is too short or whose fields are not numbers in range.
class InvalidDateTimeString : public DebuggableException {};

// A time text that reads well but names a date or time that does not exist.
class InvalidTime : public DebuggableException {};
class NoSuchTimeOfDay : public InvalidTime {};
class NoSuchDate : public InvalidTime {};

// A time text that does not follow the time-text grammar.
class ParsingFailure : public DebuggableException {};
// A time text without a zone where one is required.
class NoTimeZone : public DebuggableException {};
