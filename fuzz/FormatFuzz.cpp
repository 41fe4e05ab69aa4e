// Parses any bytes as a translation file, then renders each of its keys and a
// few fixed texts under it with zero, one and two arguments (the one-argument
// form in the locale's encoding), and a sample of the catalogue, a summary and
// a deadline text with the file in force for the whole program.
#include <cstddef>
#include <cstdint>

#include "base/unicode/Local8Bit.h"
#include "base/unicode/UTF8.h"
#include "protocol/ActionRequest.h"
#include "text/ActionSummary.h"
#include "text/FormattedDeadline.h"
#include "text/LocalizedStrings.h"
#include "text/UFormat.h"

namespace {

template <class Render>
void Quietly(Render render) {
    try {
        render();
    } catch (const BadFormatStringError&) {
    } catch (const ImproperFormatVariableName&) {
    } catch (const UndefinedFormatVariable&) {
    } catch (const TooManyFormatArguments&) {
    } catch (const TooFewFormatArguments&) {
    } catch (const InvalidTextEncoding&) {
    } catch (const UnixPlatform::WideToMultiByteConvertError&) {
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const FormatOverrideSet set(UStringRef<UTF8>(reinterpret_cast<const char*>(data), size));
    FormatOverrideContext context;
    const FormatOverrideScope scope(set, context);
    const char* const kKeys[] = {"There are {x} pending actions.", "{a}-{b}", "{_tab}", "{x}{x}"};
    for (const auto& entry : set.Entries()) {
        for (UStringRef<UTF8> key : {entry.first, UStringRef<UTF8>(kKeys[entry.second.Size() % 4])}) {
            const FormatPair pair = UFormat(key, key, context);
            Quietly([&] { MakeUString(FormatPlusArguments(pair)); });
            Quietly([&] { MakePlatformString(FormatPlusArguments(pair, "1")); });
            Quietly([&] { MakeUString(FormatPlusArguments(pair, "1", "{2}")); });
        }
    }
    const FormatOverrideScope global(set, GlobalFormatOverrideContext());
    const Instant start(1763165760LL * 1000000);
    const Instant end = start + TimeInterval(3600LL * 1000000);
    ActionRequest action;
    action.restart = size % 2 == 0;
    action.requestSave = size % 3 == 0;
    action.deadline = TimeObject(end, TimeZone(0));
    Quietly([&] { LocalizedStrings::QuietModeExplanation(start, end); });
    Quietly([&] { LocalizedStrings::SnoozeCaption(); });
    Quietly([&] { ActionSummary(action); });
    Quietly([&] { FormattedDeadline(end, start, size % 2 == 1, size % 5 == 0); });
    return 0;
}
