#include "client/ClientDocuments.h"

#include <exception>
#include <memory>

#include "base/files/FileLocation.h"
#include "base/files/FileName.h"
#include "base/time/TimeObject.h"
#include "base/time/TimeText.h"
#include "base/time/TimeZone.h"
#include "base/time/XMLTime.h"
#include "base/unicode/Base64.h"
#include "base/unicode/UTextReceiver.h"
#include "base/xml/SimpleXML.h"
#include "base/xml/XMLWriter.h"
#include "protocol/ActionRequest.h"
#include "protocol/ClientRequests.h"
#include "protocol/Documents.h"
#include "protocol/InitializationInfo.h"
#include "protocol/UIReports.h"
#include "protocol/XMLSerialize.h"

namespace {

TimeObject At(Instant now, Milliseconds offset) {
    return TimeObject(now + TimeInterval(offset.count() * 1000), TimeZone::Local());
}

TimeInterval Interval(Milliseconds length) { return TimeInterval(length.count() * 1000); }

NullOr<SharedUString<UTF8>> OptionalText(const std::optional<std::string>& text) {
    if (!text) return NullOr<SharedUString<UTF8>>::Null();
    return SharedUString<UTF8>(*text);
}

template <class Record>
void Write(XMLWriter& writer, const Record& record) {
    XMLSave(writer, XMLTag(record), record);
}

void WriteRecord(XMLWriter& writer, const Command& command, Instant now) {
    switch (command.kind) {
        case Command::Kind::Action: {
            const ActionCommand& a = command.action;
            const NullOr<TimeObject> deadline =
                a.deadline ? NullOr<TimeObject>(At(now, *a.deadline)) : NullOr<TimeObject>::Null();
            Write(writer, ActionRequest(a.id, deadline, SharedUString<UTF8>(a.title), SharedUString<UTF8>(a.text),
                                        a.cancellable, a.shutdown, a.restart, OptionalText(a.preview), a.force,
                                        a.save, OptionalText(a.confirm), a.canned));
            break;
        }
        case Command::Kind::Remove: {
            static const char* const kTypes[] = {"Action", "Offer", "Message", "All"};
            RemoveRequest request;
            request.id = command.remove.id;
            for (int type = 0; type < 4; ++type) {
                if (command.remove.type == kTypes[type]) request.type = type;
            }
            Write(writer, request);
            break;
        }
        case Command::Kind::Message: {
            MessageRequest request;
            request.id = command.message.id;
            request.title = SharedUString<UTF8>(command.message.title);
            request.message = SharedUString<UTF8>(command.message.text);
            request.isCompletionMessage = command.message.completion;
            if (command.message.timeout) request.timeout = Interval(*command.message.timeout);
            Write(writer, request);
            break;
        }
        case Command::Kind::QuietStart:
            Write(writer, QuietModeStart{At(now, command.quietStart.start), At(now, command.quietStart.end)});
            break;
        case Command::Kind::QuietEnd:
            Write(writer, QuietModeEnd{});
            break;
        default:
            break;
    }
}

std::string Quoted(const std::string& text) {
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') quoted += '\\';
        quoted += c == '\n' ? ' ' : c;
    }
    return quoted + "\"";
}

template <class Record>
Record Load(const XMLElement& element) {
    Record record;
    XMLSerialize(element, record);
    return record;
}

Report Decode(const XMLElement& element) {
    Report report;
    report.kind = element.Name().ToString();
    report.text = report.kind;
    if (report.kind == "ActionTaken") {
        const ActionTaken taken = Load<ActionTaken>(element);
        report.id = taken.id;
        report.cancel = taken.isCancel;
        report.text += " id=" + std::to_string(taken.id) + " cancel=" + (taken.isCancel ? "true" : "false");
        if (taken.isOffer) report.text += " offer=true";
    } else if (report.kind == "RemindTime") {
        report.text += " at=" + Quoted(TimeToText(Load<RemindTime>(element).time).Str());
    } else if (report.kind == "RemindInterval") {
        report.text += " interval=" + TimeIntervalToXMLDuration(Load<RemindInterval>(element).interval).Str();
    } else if (report.kind == "ClientUIErrorMessage") {
        // The text is shown as it came: the client's own locale might not
        // hold every character of it.
        ClientUIErrorMessage error;
        XMLSerialize(element, "ErrorCode", error.errorCode);
        std::string debug;
        for (const XMLElement& child : element.Children()) {
            if (child.Name().Ref() == "DebugString") debug = std::string(child.GetValue().View());
        }
        report.id = error.errorCode;
        report.text += " code=" + std::to_string(error.errorCode) + " debug=" + Quoted(debug);
    }
    return report;
}

}  // namespace

std::string RecordsDocument(const std::vector<Command>& commands, Instant now) {
    UStringBuilder text;
    XMLWriter writer(text, XMLWriter::XMLFormatStyle(XMLWriter::XMLFormatStyle::Indented));
    writer.BeginDocument(XMLWriter::WithEncoding);
    writer.BeginElement("ClientToUI");
    for (const Command& command : commands) WriteRecord(writer, command, now);
    writer.EndElement();
    writer.EndDocument();
    return text.TakeText();
}

InitializationInfo ScenarioInitialization(const Scenario& scenario, const std::string& baseDirectory, Instant now) {
    InitializationInfo info;
    info.baseDirectory = MakeFileLocation(baseDirectory);
    for (const SupportFile& file : scenario.files) {
        FileTransfer transfer;
        transfer.fileName = FileName(file.name);
        transfer.subFolder = FileName(file.subFolder);
        transfer.content = Base64Encoder::Encode(file.bytes).Str();
        info.supportFiles.push_back(transfer);
    }
    InitialUISettings& settings = info.settings;
    settings.remindInterval = Interval(scenario.remindInterval);
    if (scenario.remindTime) settings.remindTime = At(now, *scenario.remindTime);
    settings.allowSnooze = scenario.allowSnooze;
    settings.useLocale = scenario.useLocale;
    return info;
}

std::string InitializationInfoDocument(const InitializationInfo& info) { return ConvertToXML(info).Str(); }

std::vector<Report> ReadReports(const std::string& document) {
    std::vector<Report> reports;
    try {
        const std::unique_ptr<XMLElement> root = SimpleXML::Parse(UStringRef<UTF8>(document));
        if (!root) throw ReportUnreadable{"the document has no root element"};
        for (const XMLElement& child : root->Children()) reports.push_back(Decode(child));
    } catch (const DebuggableException&) {
        throw ReportUnreadable{"the document cannot be read"};
    }
    return reports;
}
