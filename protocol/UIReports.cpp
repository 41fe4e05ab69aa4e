#include "protocol/UIReports.h"

#include "protocol/XMLSerialize.h"

// The reading bodies serve tests and the sample client, which read what this
// program sends.

namespace {

template <class Archive>
void SerializeFields(Archive& archive, ActionTaken& record) {
    XMLSerialize(archive, "IsCancel", record.isCancel);
    XMLSerialize(archive, "IsOffer", record.isOffer);
    XMLSerialize(archive, "ID", record.id);
}

template <class Archive>
void SerializeFields(Archive& archive, RemindTime& record) {
    XMLSerialize(archive, "TimeObject", record.time);
}

template <class Archive>
void SerializeFields(Archive& archive, RemindInterval& record) {
    XMLSerialize(archive, "TimeInterval", record.interval);
}

template <class Archive>
void SerializeFields(Archive& archive, ClientUIErrorMessage& record) {
    XMLSerialize(archive, "DebugString", record.debugString);
    XMLSerialize(archive, "ErrorCode", record.errorCode);
}

}  // namespace

void XMLSerialize(XMLWriter&, ReadyForData&) {}
void XMLSerialize(const XMLElement&, ReadyForData&) {}

void XMLSerialize(XMLWriter& writer, ActionTaken& record) { SerializeFields(writer, record); }
void XMLSerialize(const XMLElement& element, ActionTaken& record) { SerializeFields(element, record); }

void XMLSerialize(XMLWriter& writer, RemindTime& record) { SerializeFields(writer, record); }
void XMLSerialize(const XMLElement& element, RemindTime& record) { SerializeFields(element, record); }

void XMLSerialize(XMLWriter& writer, RemindInterval& record) { SerializeFields(writer, record); }
void XMLSerialize(const XMLElement& element, RemindInterval& record) { SerializeFields(element, record); }

void XMLSerialize(XMLWriter& writer, ClientUIErrorMessage& record) { SerializeFields(writer, record); }
void XMLSerialize(const XMLElement& element, ClientUIErrorMessage& record) { SerializeFields(element, record); }
