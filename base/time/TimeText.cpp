#include "base/time/TimeText.h"

#include <cstdint>
#include <string>

#include "base/time/TimeLanguage.h"

namespace {

constexpr std::size_t kTimeTextCapacity = 31;
constexpr std::size_t kDateTextCapacity = 16;

template <std::size_t N>
void AppendDateText(FixedText<N>& out, const DateRecord& date) {
    out.Append(DayOfWeekAbbreviation(date.DayOfWeek()));
    out.Append(", ");
    out.AppendNumber(date.day, 2);
    out.Append(' ');
    out.Append(MonthAbbreviation(date.month));
    out.Append(' ');
    out.AppendNumber(date.year, 4);
}

template <std::size_t N>
void AppendTimeText(FixedText<N>& out, const TimeOfDay& time) {
    out.AppendNumber(time.hour, 2);
    out.Append(':');
    out.AppendNumber(time.minute, 2);
    out.Append(':');
    out.AppendNumber(time.second, 2);
}

template <std::size_t N>
AutoUString<UTF8> ToString(const FixedText<N>& text) {
    return AutoUString<UTF8>(std::string(text.View()));
}

}  // namespace

AutoUString<UTF8> TimeToText(const TimeObject& time) {
    FixedText<kDateTextCapacity> date;
    AppendDateText(date, time.Date());

    FixedText<kTimeTextCapacity> out;
    out.Append(date.View());
    out.Append(' ');
    AppendTimeText(out, time.Time());
    out.Append(' ');
    const std::int32_t offset = time.Zone().Seconds();
    const std::uint64_t magnitude = static_cast<std::uint64_t>(offset < 0 ? -std::int64_t{offset} : offset);
    out.Append(offset < 0 ? '-' : '+');
    out.AppendNumber(magnitude / 3600, 2);
    out.AppendNumber(magnitude / 60 % 60, 2);
    return ToString(out);
}

AutoUString<UTF8> TimeToText(Instant instant, TimeZone zone) {
    return TimeToText(TimeObject(instant, zone));
}

TimeObject TextToTime(UStringRef<UTF8> text) {
    const ParsedTimeText parsed = ParseTimeText(text.View());
    if (!parsed.hasZone) throw NoTimeZone();
    return TimeObject(parsed.date, parsed.time, parsed.zone);
}

TimeObject TextToTime(UStringRef<UTF8> text, TimeZone zone) {
    const ParsedTimeText parsed = ParseTimeText(text.View());
    if (!parsed.hasZone) return TimeObject(parsed.date, parsed.time, zone);
    TimeObject result(parsed.date, parsed.time, parsed.zone);
    result.SetTimeZone(zone);
    return result;
}

AutoUString<UTF8> DateRecordToText(const DateRecord& date) {
    FixedText<kDateTextCapacity> out;
    AppendDateText(out, date);
    return ToString(out);
}

AutoUString<UTF8> TimeOfDayToText(const TimeOfDay& time) {
    FixedText<8> out;
    AppendTimeText(out, time);
    return ToString(out);
}

const char* DayOfWeekAbbreviation(DayOfWeek day) noexcept {
    static const char* const kNames[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    return day <= Saturday ? kNames[day] : "???";
}

const char* MonthAbbreviation(Month month) noexcept {
    static const char* const kNames[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                         "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    return month >= January && month <= December ? kNames[month - 1] : "???";
}
