#include "protocol/ClientRequests.h"

#include "protocol/XMLSerialize.h"

namespace {

constexpr const char* kRemoveTypeWords[] = {"Action", "Offer", "Message", "All"};

template <class Archive>
void SerializeFields(Archive& archive, MessageRequest& record) {
    XMLSerialize(archive, "Title", record.title);
    XMLSerialize(archive, "Message", record.message);
    XMLSerialize(archive, "IsCompletionMessage", record.isCompletionMessage);
    XMLSerialize(archive, "Timeout", record.timeout);
    XMLSerialize(archive, "ID", record.id);
}

template <class Archive>
void SerializeFields(Archive& archive, QuietModeStart& record) {
    XMLSerialize(archive, "StartTime", record.startTime);
    XMLSerialize(archive, "EndTime", record.endTime);
}

}  // namespace

void XMLLoad(const XMLElement& element, RemoveRequest& record) {
    SharedUString<UTF8> word;
    XMLSerialize(element, "RemoveType", word);
    for (int type = RemoveRequest::Action; type <= RemoveRequest::All; ++type) {
        if (word.Ref() == kRemoveTypeWords[type]) {
            record.type = type;
        }
    }
    XMLSerialize(element, "ID", record.id);
}

void XMLSerialize(XMLWriter& writer, RemoveRequest& record) {
    if (record.type >= RemoveRequest::Action && record.type <= RemoveRequest::All) {
        XMLSerialize(writer, "RemoveType", UStringRef<UTF8>(kRemoveTypeWords[record.type]));
    }
    XMLSerialize(writer, "ID", record.id);
}

void XMLSerialize(XMLWriter& writer, MessageRequest& record) {
    SerializeFields(writer, record);
}

void XMLSerialize(const XMLElement& element, MessageRequest& record) {
    SerializeFields(element, record);
}

void XMLSerialize(XMLWriter& writer, QuietModeStart& record) {
    SerializeFields(writer, record);
}

void XMLSerialize(const XMLElement& element, QuietModeStart& record) {
    SerializeFields(element, record);
}

void XMLSerialize(XMLWriter&, QuietModeEnd&) {}

void XMLSerialize(const XMLElement&, QuietModeEnd&) {}

bool operator==(const RemoveRequest& a, const RemoveRequest& b) {
    return a.type == b.type && a.id == b.id;
}

bool operator==(const MessageRequest& a, const MessageRequest& b) {
    return a.title == b.title && a.message == b.message && a.isCompletionMessage == b.isCompletionMessage &&
           a.timeout == b.timeout && a.id == b.id;
}

bool operator==(const QuietModeStart& a, const QuietModeStart& b) {
    return a.startTime == b.startTime && a.endTime == b.endTime;
}
