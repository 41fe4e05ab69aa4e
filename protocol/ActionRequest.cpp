#include "protocol/ActionRequest.h"

#include "protocol/XMLSerialize.h"

ActionRequest::ActionRequest(unsigned long long id, const NullOr<TimeObject>& deadline,
                             const SharedUString<UTF8>& title, const SharedUString<UTF8>& shortDescription,
                             bool cancellable, bool shutdown, bool restart,
                             const NullOr<SharedUString<UTF8>>& preview, bool forceRun, bool requestSave,
                             const NullOr<SharedUString<UTF8>>& preActionMessage, bool useCannedStrings)
    : id(id),
      deadline(deadline),
      preview(preview),
      preActionMessage(preActionMessage),
      title(title),
      shortDescription(shortDescription),
      cancellable(cancellable),
      shutdown(shutdown),
      restart(restart),
      forceRun(forceRun),
      requestSave(requestSave),
      useCannedStrings(useCannedStrings) {}

NullOr<Instant> ActionRequest::Deadline() const {
    if (!deadline) {
        return NullOr<Instant>::Null();
    }
    return Instant(deadline.Get());
}

bool operator==(const ActionRequest& a, const ActionRequest& b) {
    return a.id == b.id && a.deadline == b.deadline && a.preview == b.preview &&
           a.preActionMessage == b.preActionMessage && a.title == b.title &&
           a.shortDescription == b.shortDescription && a.cancellable == b.cancellable &&
           a.shutdown == b.shutdown && a.restart == b.restart && a.forceRun == b.forceRun &&
           a.requestSave == b.requestSave && a.useCannedStrings == b.useCannedStrings;
}

namespace {

template <class Archive>
void SerializeFields(Archive& archive, ActionRequest& record) {
    XMLSerialize(archive, "ID", record.id);
    XMLSerialize(archive, "Title", record.title);
    XMLSerialize(archive, "ShortDescription", record.shortDescription);
    XMLSerialize(archive, "Preview", record.preview);
    XMLSerialize(archive, "PreActionMessage", record.preActionMessage);
    XMLSerialize(archive, "Deadline", record.deadline);
    XMLSerialize(archive, "Cancellable", record.cancellable);
    XMLSerialize(archive, "Restart", record.restart);
    XMLSerialize(archive, "Shutdown", record.shutdown);
    XMLSerialize(archive, "ForceRun", record.forceRun);
    XMLSerialize(archive, "RequestSave", record.requestSave);
    XMLSerialize(archive, "UseCannedStrings", record.useCannedStrings);
}

}  // namespace

void XMLSerialize(XMLWriter& writer, ActionRequest& record) {
    SerializeFields(writer, record);
}

void XMLSerialize(const XMLElement& element, ActionRequest& record) {
    SerializeFields(element, record);
}
