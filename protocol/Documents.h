#pragma once

// Whole documents for the pipe: one record under a root element, written
// indented, with the declaration that names UTF-8. Pure builders: the caller
// only queues the text they return.

#include <string>

#include "base/unicode/UString.h"
#include "base/unicode/UTextReceiver.h"
#include "base/xml/XMLWriter.h"
#include "protocol/XMLSerialize.h"

struct ActionRequest;
struct InitializationInfo;
struct RemoveRequest;
struct MessageRequest;
struct QuietModeStart;
struct QuietModeEnd;
struct ReadyForData;
struct ActionTaken;
struct RemindTime;
struct RemindInterval;
struct ClientUIErrorMessage;

// The element name under which a record travels as a message.
template <class Record>
UStringRef<UTF8> XMLTag(const Record& record);

template <> UStringRef<UTF8> XMLTag(const ActionRequest&);
template <> UStringRef<UTF8> XMLTag(const InitializationInfo&);
template <> UStringRef<UTF8> XMLTag(const RemoveRequest&);
template <> UStringRef<UTF8> XMLTag(const MessageRequest&);
template <> UStringRef<UTF8> XMLTag(const QuietModeStart&);
template <> UStringRef<UTF8> XMLTag(const QuietModeEnd&);
template <> UStringRef<UTF8> XMLTag(const ReadyForData&);
template <> UStringRef<UTF8> XMLTag(const ActionTaken&);
template <> UStringRef<UTF8> XMLTag(const RemindTime&);
template <> UStringRef<UTF8> XMLTag(const RemindInterval&);
template <> UStringRef<UTF8> XMLTag(const ClientUIErrorMessage&);

namespace protocol_detail {

template <class Record>
AutoUString<UTF8> WriteDocument(const char* root, const Record& record) {
    UStringBuilder text(256);
    XMLWriter writer(text, XMLWriter::XMLFormatStyle(0));
    writer.BeginDocument(XMLWriter::EncodingDeclaration(0));
    writer.BeginElement(root);
    XMLSave(writer, XMLTag(record), record);
    writer.EndElement();
    writer.EndDocument();
    return AutoUString<UTF8>(text.TakeText());
}

}  // namespace protocol_detail

// A document under the root "ClientToUI". The client's own documents have
// that root, and so, on purpose, do the two this program sends outside the
// usual root: ReadyForData and ClientUIErrorMessage.
template <class Record>
AutoUString<UTF8> ConvertToXML(const Record& record) {
    return protocol_detail::WriteDocument("ClientToUI", record);
}

// A document under the root "UIToClient": ActionTaken, RemindTime,
// RemindInterval.
template <class Record>
AutoUString<UTF8> ConvertToUIToClientXML(const Record& record) {
    return protocol_detail::WriteDocument("UIToClient", record);
}
