#include "actions/PendingActions.h"

#include <algorithm>

std::vector<ActionRequest> actions;

void RemoveAction(unsigned long long id) {
    auto found = std::find_if(actions.begin(), actions.end(),
                              [id](const ActionRequest& action) { return action.id == id; });
    if (found != actions.end()) {
        actions.erase(found);
    }
}
