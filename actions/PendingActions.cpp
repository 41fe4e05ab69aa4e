#include "actions/PendingActions.h"

#include <algorithm>

std::vector<ActionRequest> actions;

namespace {

EntryNumber newestEntry = 0;

}  // namespace

EntryNumber AppendAction(const ActionRequest& request) {
    actions.push_back(request);
    actions.back().entry = ++newestEntry;
    return newestEntry;
}

void ReplaceActions(const std::vector<ActionRequest>& entries) {
    actions.clear();
    for (const ActionRequest& entry : entries) AppendAction(entry);
}

EntryNumber NewestEntryNumber() { return newestEntry; }

std::size_t FindEntry(EntryNumber entry) {
    const auto found = std::find_if(actions.begin(), actions.end(),
                                    [entry](const ActionRequest& action) { return action.entry == entry; });
    return static_cast<std::size_t>(found - actions.begin());
}

std::size_t FindShownEntry(unsigned long long id) {
    const auto found = std::find_if(actions.rbegin(), actions.rend(),
                                    [id](const ActionRequest& action) { return action.id == id; });
    return found == actions.rend() ? actions.size() : static_cast<std::size_t>(actions.rend() - found) - 1;
}

void RemoveAction(unsigned long long id) {
    auto found = std::find_if(actions.begin(), actions.end(),
                              [id](const ActionRequest& action) { return action.id == id; });
    if (found != actions.end()) {
        actions.erase(found);
    }
}
