#include "app/Attention.h"

#include <algorithm>
#include <cstdint>

namespace {

// The countdown the dialog shows is this long; the alert comes as it starts.
constexpr std::int64_t kLastMinutesSeconds = 300;

// Whether a forced action's deadline is less than five minutes away (also
// when it is now or has just passed). In whole seconds, as the tick compares
// them; unlike converting the deadline to an Instant this cannot throw.
bool InLastFiveMinutes(const ActionRequest& action, Instant now) {
    if (!action.forceRun || !action.deadline) return false;
    const std::int64_t nowSeconds = now.Microseconds() / kMicrosecondsPerSecond;
    return action.deadline.Get().SecondsSinceEpoch() < nowSeconds + kLastMinutesSeconds;
}

}  // namespace

bool DeadlineAlerts::Due(const std::vector<ActionRequest>& pending, Instant now) {
    const auto gone = [&](EntryNumber entry) {
        return std::none_of(pending.begin(), pending.end(), [&](const ActionRequest& a) { return a.entry == entry; });
    };
    alerted_.erase(std::remove_if(alerted_.begin(), alerted_.end(), gone), alerted_.end());
    return std::any_of(pending.begin(), pending.end(), [&](const ActionRequest& action) {
        return InLastFiveMinutes(action, now) &&
               std::find(alerted_.begin(), alerted_.end(), action.entry) == alerted_.end();
    });
}

void DeadlineAlerts::Alerted(const std::vector<ActionRequest>& pending, Instant now) {
    for (const ActionRequest& action : pending) {
        if (InLastFiveMinutes(action, now) &&
            std::find(alerted_.begin(), alerted_.end(), action.entry) == alerted_.end()) {
            alerted_.push_back(action.entry);
        }
    }
}
