#pragma once

// When the action dialog asks for the user's attention. Only the hidden
// window's "open" raises it (the dispatch): otherwise a shown dialog is never
// pulled over the user's work. A new action over a shown dialog, and a forced
// deadline coming within its last five minutes, mark it urgent instead, once
// each; the user's next touch of the dialog clears the mark on the X side.

#include <vector>

#include "base/time/Instant.h"
#include "protocol/ActionRequest.h"

// The pending entries whose forced deadline has asked for attention already.
// Entry numbers only grow, so a new entry is never taken for one alerted before.
class DeadlineAlerts {
public:
    // Forgets the entries no longer pending; true when a pending forced
    // action's deadline lies within the last five minutes before it and has
    // not been alerted yet.
    bool Due(const std::vector<ActionRequest>& pending, Instant now);
    // Notes every entry that Due counted as alerted.
    void Alerted(const std::vector<ActionRequest>& pending, Instant now);

private:
    std::vector<EntryNumber> alerted_;
};
