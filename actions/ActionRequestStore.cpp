#include "actions/ActionRequestStore.h"

namespace {

// The least notice a forced action's displayed deadline gives.
constexpr TimeInterval kLeastNotice(300000000);

}  // namespace

bool ActionRequestStore::HasAction(const unsigned long long& id) const {
    return actions_.find(id) != actions_.end();
}

const ActionRequest& ActionRequestStore::GetAction(const unsigned long long& id) const {
    auto found = actions_.find(id);
    if (found == actions_.end()) {
        throw NoSuchActionRequestID();
    }
    return found->second;
}

void ActionRequestStore::RemoveAction(const unsigned long long& id) {
    if (actions_.erase(id) == 0) {
        throw NoSuchActionRequestID();
    }
}

void ActionRequestStore::UpdateActions(const std::vector<ActionRequest>& actions) {
    const Instant soon = Instant::Now() + kLeastNotice;
    for (const ActionRequest& action : actions) {
        ActionRequest& stored = actions_[action.id];
        stored = action;
        if (stored.forceRun && stored.deadline && Instant(stored.deadline.Get()) < soon) {
            stored.deadline = TimeObject(soon, TimeZone(0));
        }
    }
}
