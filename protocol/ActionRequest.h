#pragma once

#include <cstdint>

#include "base/time/Instant.h"
#include "base/time/TimeObject.h"
#include "base/unicode/UString.h"
#include "protocol/NullOr.h"

class XMLElement;
class XMLWriter;

// The number the pending list gives an entry on arrival (1, 2, ...); 0 for a
// record that was never listed.
using EntryNumber = std::uint64_t;

// One pending action offered to the user, as the client describes it.
struct ActionRequest {
    ActionRequest() = default;
    ActionRequest(unsigned long long id, const NullOr<TimeObject>& deadline, const SharedUString<UTF8>& title,
                  const SharedUString<UTF8>& shortDescription, bool cancellable, bool shutdown, bool restart,
                  const NullOr<SharedUString<UTF8>>& preview, bool forceRun, bool requestSave,
                  const NullOr<SharedUString<UTF8>>& preActionMessage, bool useCannedStrings);

    // The deadline as an instant; empty when the action has none.
    NullOr<Instant> Deadline() const;

    unsigned long long id = 0;
    NullOr<TimeObject> deadline;
    NullOr<SharedUString<UTF8>> preview;
    NullOr<SharedUString<UTF8>> preActionMessage;
    SharedUString<UTF8> title;
    SharedUString<UTF8> shortDescription;
    bool cancellable = false;
    bool shutdown = false;
    bool restart = false;
    bool forceRun = false;
    bool requestSave = false;
    // The client always sends this flag; false until it does.
    bool useCannedStrings = false;

    // Not part of the conversation (never read or written, never compared):
    // set by the pending list, so that two entries with one ID stay apart.
    EntryNumber entry = 0;
};

// Fields travel as "ID", "Title", "ShortDescription", "Preview",
// "PreActionMessage", "Deadline", "Cancellable", "Restart", "Shutdown",
// "ForceRun", "RequestSave" and "UseCannedStrings".
void XMLSerialize(XMLWriter& writer, ActionRequest& record);
void XMLSerialize(const XMLElement& element, ActionRequest& record);

bool operator==(const ActionRequest& a, const ActionRequest& b);
inline bool operator!=(const ActionRequest& a, const ActionRequest& b) { return !(a == b); }
