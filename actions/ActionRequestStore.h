#pragma once

#include <map>
#include <vector>

#include "base/Exceptions.h"
#include "protocol/ActionRequest.h"

class NoSuchActionRequestID : public DebuggableException {};

// A snapshot of the pending actions keyed by ID, ascending. The action dialog
// rebuilds one on every refresh; the summary texts read the selected actions
// from it. Imminent forced deadlines are moved here, in the snapshot only, so
// that what the user sees always gives at least five minutes' notice.
class ActionRequestStore {
public:
    using Map = std::map<unsigned long long, ActionRequest>;

    bool HasAction(const unsigned long long& id) const;
    const ActionRequest& GetAction(const unsigned long long& id) const;
    void RemoveAction(const unsigned long long& id);

    // Merges the list in: a later entry with the same ID wins, entries not in
    // the list are kept.
    void UpdateActions(const std::vector<ActionRequest>& actions);

    const Map& Actions() const noexcept { return actions_; }
    bool Empty() const noexcept { return actions_.empty(); }

private:
    Map actions_;
};
