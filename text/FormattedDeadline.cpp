#include "text/FormattedDeadline.h"

#include <cstdint>

#include "text/FormattedValues.h"
#include "text/UFormat.h"

namespace {

constexpr std::int64_t kSecond = 1000000;
constexpr std::int64_t kMinute = 60 * kSecond;
constexpr std::int64_t kFiveMinutes = 5 * kMinute;
constexpr std::int64_t kHour = 60 * kMinute;
constexpr std::int64_t kDay = 24 * kHour;

template <class... Arguments>
AutoUString<UTF8> Text(const char* english, const Arguments&... arguments) {
    return MakeUString(FormatPlusArguments(UFormat(english, english), arguments...));
}

AutoUString<UTF8> Number(std::int64_t value) {
    return UnixPlatform::FormattedNumber(static_cast<std::uint64_t>(value));
}

// Nearest whole unit, where exactly half a unit rounds down: 36 hours is
// "1 day", a microsecond more is "2 days".
std::int64_t RoundHalfDown(std::int64_t value, std::int64_t unit) {
    return value / unit + (value % unit > unit / 2 ? 1 : 0);
}

// The last five minutes of an action that will run by itself, truncated to
// whole seconds.
AutoUString<UTF8> Countdown(std::int64_t remaining) {
    const std::int64_t minutes = remaining / kMinute;
    const std::int64_t seconds = remaining % kMinute / kSecond;
    if (minutes == 0) {
        return seconds == 1 ? Text("1 second") : Text("{seconds} seconds", Number(seconds));
    }
    if (minutes == 1) {
        return seconds == 1 ? Text("1 minute, 1 second")
                            : Text("1 minute, {seconds} seconds", Number(seconds));
    }
    return seconds == 1 ? Text("{minutes} minutes, 1 second", Number(minutes))
                        : Text("{minutes} minutes, {seconds} seconds", Number(minutes), Number(seconds));
}

}  // namespace

AutoUString<UTF8> FormattedDeadline(TimeInterval remaining, bool forceRun, bool fromNow) {
    const std::int64_t micros = remaining.Microseconds();
    if (micros < 0) {
        if (forceRun) {
            return fromNow ? Text("Running...") : Text("0 seconds");
        }
        return Text("Overdue");
    }
    AutoUString<UTF8> time;
    if (micros > kDay) {
        const std::int64_t days = RoundHalfDown(micros, kDay);
        time = days == 1 ? Text("1 day") : Text("{days} days", Number(days));
    } else if (micros > kHour) {
        const std::int64_t hours = RoundHalfDown(micros, kHour);
        time = hours == 1 ? Text("1 hour") : Text("{hours} hours", Number(hours));
    } else if (micros > kFiveMinutes) {
        // Always plural: the value is 5 to 60.
        time = Text("{minutes} minutes", Number(micros / kMinute));
    } else if (!forceRun) {
        return Text("Now");
    } else {
        time = Countdown(micros);
    }
    if (!fromNow) {
        return time;
    }
    return Text("{time} from now", time);
}

AutoUString<UTF8> FormattedDeadline(Instant deadline, Instant now, bool forceRun, bool fromNow) {
    return FormattedDeadline(deadline - now, forceRun, fromNow);
}
