#include "base/time/XMLTime.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include "base/Exceptions.h"
#include "base/time/TimeObject.h"
#include "base/time/TimeZone.h"

namespace {

constexpr char kDurationMalformed[] = "Could not convert XMLDuration to TimeInterval";
constexpr char kDurationTooPrecise[] =
    "Could not convert XMLDuration to TimeInterval: cannot handle more than microsecond precision.";
constexpr char kDurationOverflow[] = "Could not convert XMLDuration to TimeInterval due to integer overflow.";

constexpr std::int64_t kMaxMicros = std::numeric_limits<std::int64_t>::max();

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

void AppendNumber(std::string& out, std::uint64_t value, std::size_t minDigits) {
    std::string digits = std::to_string(value);
    if (digits.size() < minDigits) out.append(minDigits - digits.size(), '0');
    out += digits;
}

// A field of a date-time text at a fixed position: every character a digit.
unsigned StrictField(std::string_view text, std::size_t pos, std::size_t length) {
    unsigned value = 0;
    for (std::size_t i = pos; i < pos + length; ++i) {
        if (!IsDigit(text[i])) throw InvalidDateTimeString();
        value = value * 10 + static_cast<unsigned>(text[i] - '0');
    }
    return value;
}

// A field of the lenient date reader: the leading digits of whatever part of
// the field the text holds, 0 when there are none.
unsigned LenientField(std::string_view text, std::size_t pos, std::size_t length) {
    unsigned value = 0;
    for (std::size_t i = pos; i < pos + length && i < text.size() && IsDigit(text[i]); ++i) {
        value = value * 10 + static_cast<unsigned>(text[i] - '0');
    }
    return value;
}

// The zone after the seconds (and fraction) of a date-time text, as the
// offset in microseconds to subtract from the fields read as UTC.
std::int64_t ZoneOffsetMicros(std::string_view zone) {
    const bool utc = zone.find('Z') != std::string_view::npos || zone.find("+00:00") != std::string_view::npos ||
                     zone.find("-00:00") != std::string_view::npos;
    if (utc) return 0;
    // Anything but exactly "±hh:mm" (no zone at all, or "+0200") is local time.
    if (zone.find_first_of("+-") == std::string_view::npos || zone.size() != 6) {
        return TimeZone::Local().Microseconds();
    }
    if (zone[0] != '+' && zone[0] != '-') throw InvalidDateTimeString();
    const std::int64_t seconds = std::int64_t{StrictField(zone, 1, 2)} * 3600 + StrictField(zone, 4, 2) * 60;
    return (zone[0] == '+' ? seconds : -seconds) * kMicrosecondsPerSecond;
}

// Reads one decimal count of a duration; a count that cannot be a number of
// microseconds at all is an overflow at once.
std::uint64_t ReadDurationCount(std::string_view text, std::size_t& pos) {
    std::uint64_t value = 0;
    const std::size_t start = pos;
    for (; pos < text.size() && IsDigit(text[pos]); ++pos) {
        value = value * 10 + static_cast<std::uint64_t>(text[pos] - '0');
        if (value > static_cast<std::uint64_t>(kMaxMicros)) throw ExceptionPL(kDurationOverflow);
    }
    if (pos == start) throw ExceptionPL(kDurationMalformed);
    return value;
}

}  // namespace

AutoUString<UTF8> InstantToXMLDateTime(Instant instant) {
    const TimeObject local(instant, TimeZone::Local());
    std::string out = DateRecordToXMLDate(local.Date()).Str();
    out += 'T';
    out += TimeOfDayToXMLTime(local.Time()).Str();
    const std::int32_t offset = local.Zone().Seconds();
    const std::uint32_t magnitude = static_cast<std::uint32_t>(offset < 0 ? -std::int64_t{offset} : offset);
    out += offset < 0 ? '-' : '+';
    AppendNumber(out, magnitude / 3600, 2);
    out += ':';
    AppendNumber(out, magnitude / 60 % 60, 2);
    return AutoUString<UTF8>(std::move(out));
}

Instant XMLDateTimeToInstant(UStringRef<UTF8> textRef) {
    const std::string_view text = textRef.View();
    if (!text.empty() && text[0] == '-') throw InvalidDateTimeNegativeYear();
    if (text.size() < 19) throw InvalidDateTimeString();

    const unsigned year = StrictField(text, 0, 4);
    const unsigned month = StrictField(text, 5, 2);
    const unsigned day = StrictField(text, 8, 2);
    const unsigned hour = StrictField(text, 11, 2);
    const unsigned minute = StrictField(text, 14, 2);
    const unsigned second = StrictField(text, 17, 2);
    if (month < 1 || month > 12) throw InvalidDateTimeString();

    // Day, hour, minute and second are not range-checked: "10:00:60" is the
    // next minute, as the arithmetic makes it. Four-digit fields keep this far
    // from any overflow.
    const DateRecord date(day, static_cast<Month>(month), year);
    std::int64_t micros = (date.AbsoluteDay() - DateRecord::kAbsoluteDayOfEpoch) * kMicrosecondsPerDay +
                          (std::int64_t{hour} * 3600 + minute * 60 + second) * kMicrosecondsPerSecond;

    std::size_t pos = 19;
    if (text.size() > 20 && text[19] == '.') {
        // Digits past the sixth are dropped, not rounded.
        std::int64_t fraction = 0;
        std::int64_t scale = 100000;
        for (pos = 20; pos < text.size() && IsDigit(text[pos]); ++pos) {
            fraction += (text[pos] - '0') * scale;
            scale /= 10;
        }
        micros += fraction;
    }
    return Instant(micros - ZoneOffsetMicros(text.substr(pos)));
}

AutoUString<UTF8> TimeIntervalToXMLDuration(TimeInterval interval) {
    const std::int64_t micros = interval.Microseconds();
    if (micros == 0) return AutoUString<UTF8>("PT0S");
    // Unsigned, so that the most negative interval has a magnitude too.
    std::uint64_t rest = micros < 0 ? 0 - static_cast<std::uint64_t>(micros) : static_cast<std::uint64_t>(micros);
    std::string out = micros < 0 ? "-P" : "P";

    const std::uint64_t day = kMicrosecondsPerDay;
    if (rest >= day) {
        out += std::to_string(rest / day) + 'D';
        rest %= day;
        if (rest == 0) return AutoUString<UTF8>(std::move(out));
    }
    out += 'T';
    const std::uint64_t hour = 3600 * kMicrosecondsPerSecond;
    const std::uint64_t minute = 60 * kMicrosecondsPerSecond;
    if (rest >= hour) {
        out += std::to_string(rest / hour) + 'H';
        rest %= hour;
    }
    if (rest >= minute) {
        out += std::to_string(rest / minute) + 'M';
        rest %= minute;
    }
    if (rest > 0) {
        out += std::to_string(rest / kMicrosecondsPerSecond);
        if (rest % kMicrosecondsPerSecond != 0) {
            out += '.';
            AppendNumber(out, rest % kMicrosecondsPerSecond, 6);
        }
        out += 'S';
    }
    return AutoUString<UTF8>(std::move(out));
}

TimeInterval XMLDurationToTimeInterval(UStringRef<UTF8> textRef) {
    const std::string_view text = textRef.View();
    std::size_t pos = 0;
    const bool negative = pos < text.size() && text[pos] == '-';
    if (negative) ++pos;
    if (pos >= text.size() || text[pos] != 'P') throw ExceptionPL(kDurationMalformed);
    ++pos;

    // Designators must come in this order, each at most once: D, then T, then H, M, S.
    enum Rank { kNone, kDays, kTime, kHours, kMinutes, kSeconds };
    Rank last = kNone;
    bool anyComponent = false;
    std::int64_t total = 0;
    while (pos < text.size()) {
        if (text[pos] == 'T') {
            if (last >= kTime) throw ExceptionPL(kDurationMalformed);
            last = kTime;
            ++pos;
            continue;
        }
        const std::uint64_t count = ReadDurationCount(text, pos);
        std::int64_t fraction = 0;
        bool hasFraction = false;
        if (pos < text.size() && text[pos] == '.') {
            hasFraction = true;
            ++pos;
            const std::size_t start = pos;
            for (; pos < text.size() && IsDigit(text[pos]); ++pos) {
                if (pos - start == 6) throw ExceptionPL(kDurationTooPrecise);
                fraction = fraction * 10 + (text[pos] - '0');
            }
            if (pos == start) throw ExceptionPL(kDurationMalformed);
            for (std::size_t digits = pos - start; digits < 6; ++digits) fraction *= 10;
        }
        if (pos >= text.size()) throw ExceptionPL(kDurationMalformed);

        Rank rank;
        std::int64_t unit;
        switch (text[pos]) {
            case 'D': rank = kDays; unit = kMicrosecondsPerDay; break;
            case 'H': rank = kHours; unit = 3600 * kMicrosecondsPerSecond; break;
            case 'M': rank = kMinutes; unit = 60 * kMicrosecondsPerSecond; break;
            case 'S': rank = kSeconds; unit = kMicrosecondsPerSecond; break;
            default: throw ExceptionPL(kDurationMalformed);
        }
        const bool inTime = last >= kTime;
        if (rank <= last || (rank == kDays) == inTime || (hasFraction && rank != kSeconds)) {
            throw ExceptionPL(kDurationMalformed);
        }
        ++pos;
        last = rank;
        anyComponent = true;

        std::int64_t part;
        if (__builtin_mul_overflow(static_cast<std::int64_t>(count), unit, &part) ||
            __builtin_add_overflow(part, fraction, &part) || __builtin_add_overflow(total, part, &total)) {
            throw ExceptionPL(kDurationOverflow);
        }
    }
    // "P", "-P" and a "T" with nothing after it carry no component.
    if (!anyComponent || last == kTime) throw ExceptionPL(kDurationMalformed);
    return TimeInterval(negative ? -total : total);
}

AutoUString<UTF8> DateRecordToXMLDate(const DateRecord& date) {
    std::string out;
    AppendNumber(out, date.year, 4);
    out += '-';
    AppendNumber(out, date.month, 2);
    out += '-';
    AppendNumber(out, date.day, 2);
    return AutoUString<UTF8>(std::move(out));
}

DateRecord XMLDateToDateRecord(UStringRef<UTF8> textRef) {
    const std::string_view text = textRef.View();
    DateRecord date;
    date.year = LenientField(text, 0, 4);
    if (text.size() > 4) date.month = static_cast<Month>(LenientField(text, 5, 2));
    if (text.size() > 7) date.day = LenientField(text, 8, 2);
    return date;
}

AutoUString<UTF8> TimeOfDayToXMLTime(const TimeOfDay& time) {
    std::string out;
    AppendNumber(out, time.hour, 2);
    out += ':';
    AppendNumber(out, time.minute, 2);
    out += ':';
    AppendNumber(out, time.second, 2);
    return AutoUString<UTF8>(std::move(out));
}
