#include "text/FormattedValues.h"

#include <charconv>

#include "base/time/TimeObject.h"
#include "base/time/TimeText.h"
#include "base/time/TimeZone.h"
#include "text/UFormat.h"

namespace UnixPlatform {

namespace {

AutoUString<UTF8> Text(const char* english) {
    return MakeUString(FormatPlusArguments(UFormat(english, english)));
}

}  // namespace

AutoUString<UTF8> FormattedNumber(std::uint64_t number) {
    char digits[20];  // 18446744073709551615
    const std::to_chars_result end = std::to_chars(digits, digits + sizeof digits, number);
    return AutoUString<UTF8>(UStringRef<UTF8>(digits, static_cast<std::size_t>(end.ptr - digits)));
}

AutoUString<UTF8> FormattedDateRecord(const DateRecord& date) {
    return DateRecordToText(date);
}

AutoUString<UTF8> FormattedTimeOfDay(const TimeOfDay& time) {
    return TimeOfDayToText(time);
}

AutoUString<UTF8> FormattedLocalTime(Instant instant) {
    const TimeObject local(instant, TimeZone::Local());
    const AutoUString<UTF8> date = FormattedDateRecord(local.Date());
    const AutoUString<UTF8> time = FormattedTimeOfDay(local.Time());
    const char* const english = "{date} {time}";
    return MakeUString(FormatPlusArguments(UFormat(english, english), date, time));
}

AutoUString<UTF8> FormattedLongDayOfWeek(DayOfWeek day) {
    switch (day) {
        case Sunday: return Text("Sunday");
        case Monday: return Text("Monday");
        case Tuesday: return Text("Tuesday");
        case Wednesday: return Text("Wednesday");
        case Thursday: return Text("Thursday");
        case Friday: return Text("Friday");
        case Saturday: return Text("Saturday");
    }
    return Text("???");
}

AutoUString<UTF8> FormattedShortDayOfWeek(DayOfWeek day) {
    switch (day) {
        case Sunday: return Text("Sun");
        case Monday: return Text("Mon");
        case Tuesday: return Text("Tue");
        case Wednesday: return Text("Wed");
        case Thursday: return Text("Thu");
        case Friday: return Text("Fri");
        case Saturday: return Text("Sat");
    }
    return Text("???");
}

}  // namespace UnixPlatform
