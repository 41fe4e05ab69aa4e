// Any bytes as a client document, every message in it decoded into its
// record: only the errors of malformed values may escape a decoder.
#include <cstddef>
#include <cstdint>

#include "base/files/FileLocation.h"
#include "base/time/TimeText.h"
#include "base/unicode/Local8Bit.h"
#include "base/unicode/Numerals.h"
#include "base/unicode/UTF8.h"
#include "base/xml/SimpleXML.h"
#include "protocol/ActionRequest.h"
#include "protocol/ClientRequests.h"
#include "protocol/InitializationInfo.h"
#include "protocol/XMLSerialize.h"

namespace {

template <class Record>
void Decode(const XMLElement& element) {
    Record record;
    try {
        XMLLoad(element, record);
    } catch (const NotANumeral&) {
    } catch (const NumeralTooLarge&) {
    } catch (const IllegalFileName&) {
    } catch (const IllegalFileNameLength&) {
    } catch (const IllegalFileLocation&) {
    } catch (const ParsingFailure&) {
    } catch (const NoTimeZone&) {
    } catch (const InvalidTime&) {
    } catch (const ExceptionPL&) {  // the duration reader's
    } catch (const InvalidTextEncoding&) {
    } catch (const UnixPlatform::MultiByteToWideConvertError&) {
    } catch (const UnixPlatform::WideToMultiByteConvertError&) {
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    auto root = SimpleXML::Parse(UStringRef<UTF8>(reinterpret_cast<const char*>(data), size));
    if (!root) return 0;
    for (const XMLElement& message : root->Children()) {
        const UStringRef<UTF8> name = message.Name();
        if (name == "ActionRequest") Decode<ActionRequest>(message);
        if (name == "InitializationInfo") Decode<InitializationInfo>(message);
        if (name == "RemoveRequest") Decode<RemoveRequest>(message);
        if (name == "MessageRequest") Decode<MessageRequest>(message);
        if (name == "QuietModeStart") Decode<QuietModeStart>(message);
        if (name == "QuietModeEnd") Decode<QuietModeEnd>(message);
    }
    return 0;
}
