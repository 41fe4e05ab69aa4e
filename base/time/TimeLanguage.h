#pragma once

#include <string_view>

#include "base/time/DateRecord.h"
#include "base/time/TimeOfDay.h"
#include "base/time/TimeZone.h"

// The grammar of time texts, read by recursive descent (blanks are spaces and
// tabs, names compare without regard to case):
//
//   text     = [blanks] [dayName [blanks] "," [blanks]] date blanks time [blanks zone] [blanks]
//   date     = day blanks month blanks year
//   day      = 1*2DIGIT
//   month    = "Jan" / "Feb" / ... / "Dec"
//   year     = 4DIGIT
//   time     = hour ":" minute [":" second]          ; 2DIGIT each
//   zone     = ("+" / "-") 2DIGIT [":"] 2DIGIT        ; minutes 00 to 59
//            / "GMT" / "UT" / "UTC" / "Z"
//   dayName  = "Sun" / "Mon" / ... / "Sat"
//
// The day name is not checked against the date. Throws ParsingFailure for
// text outside the grammar, then NoSuchDate or NoSuchTimeOfDay for a date or
// time that does not exist (31 Feb, 24:00).

struct ParsedTimeText {
    DateRecord date;
    TimeOfDay time;
    bool hasZone = false;
    TimeZone zone;
};

ParsedTimeText ParseTimeText(std::string_view text);
