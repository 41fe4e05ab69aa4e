// Every time reader on any bytes: only their own errors may escape, and what
// the duration and time-text readers accept must survive a write and re-read.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "base/time/TimeText.h"
#include "base/time/XMLTime.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const UStringRef<UTF8> text(reinterpret_cast<const char*>(data), size);
    try {
        const TimeInterval interval = XMLDurationToTimeInterval(text);
        if (XMLDurationToTimeInterval(TimeIntervalToXMLDuration(interval)) != interval) std::abort();
    } catch (const ExceptionPL&) {}
    try {
        const TimeObject time = TextToTime(text);
        if (TextToTime(TimeToText(time)) != time) std::abort();
    } catch (const ParsingFailure&) {} catch (const NoTimeZone&) {} catch (const InvalidTime&) {}
    return 0;
}
