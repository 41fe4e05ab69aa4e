#include "app/ActionDialogModel.h"

#include <algorithm>
#include <limits>

namespace {

// Snoozing is offered only while no deadline is nearer than this.
constexpr std::int64_t kLeastSnoozeNoticeSeconds = 300;

constexpr Instant kNoDeadline(std::numeric_limits<std::int64_t>::max());

// Whether some pending entry's own deadline, as the client sent it, is less
// than five minutes away. Not the listed one: the list moves a forced
// deadline to five minutes from now, which the whole-second clock makes
// exactly "not less", and the action would run during the snooze. In whole
// seconds, like the tick that runs forced actions.
bool SomeDeadlineIsNear(const std::vector<ActionRequest>& pending, Instant now) {
    const std::int64_t soon = now.Microseconds() / kMicrosecondsPerSecond + kLeastSnoozeNoticeSeconds;
    return std::any_of(pending.begin(), pending.end(), [soon](const ActionRequest& action) {
        return action.deadline && action.deadline.Get().SecondsSinceEpoch() < soon;
    });
}

}  // namespace

void ActionDialogModel::Open(TimeInterval remindInterval, bool snoozable) {
    remindInterval_ = remindInterval;
    snoozable_ = snoozable;
    snoozeAllowed_ = snoozable;
    chosenSnoozeMinutes_.reset();
    snoozeEntries_.clear();
    snoozeSelected_ = -1;
}

ActionRequestStore ActionDialogModel::Rebuild(const std::vector<ActionRequest>& pending, Instant now) {
    ActionRequestStore store;
    store.UpdateActions(pending);
    std::vector<ActionRow> rows;
    for (const auto& [id, action] : store.Actions()) {
        if (!action.title.Empty()) rows.push_back({id, action.entry});
    }
    const auto chosen = std::find_if(rows.begin(), rows.end(),
                                     [this](const ActionRow& row) { return row.entry == selectedEntry_; });
    selectedRow_ = selectedEntry_ != 0 && chosen != rows.end() ? static_cast<int>(chosen - rows.begin()) : -1;
    if (selectedRow_ < 0) selectedEntry_ = 0;
    selected_.reset();
    if (selectedRow_ >= 0) selected_ = store.GetAction(chosen->id);
    rows_ = std::move(rows);
    pending_ = &pending;
    nothingPending_ = store.Empty();

    newestEntry_ = 0;
    for (const ActionRequest& action : pending) newestEntry_ = std::max(newestEntry_, action.entry);
    hasDeadline_ = false;
    earliestDeadline_ = kNoDeadline;
    detailsAvailable_ = false;
    for (const auto& entry : store.Actions()) {
        const ActionRequest& action = entry.second;
        if (const NullOr<Instant> deadline = action.Deadline()) {
            hasDeadline_ = true;
            earliestDeadline_ = std::min(earliestDeadline_, deadline.Get());
        }
        if (action.preview) detailsAvailable_ = true;
    }
    snoozeAllowed_ = snoozable_ && !SomeDeadlineIsNear(pending, now);
    if (!nothingPending_) RebuildSnoozeList();
    return store;
}

void ActionDialogModel::RebuildSnoozeList() {
    snoozeEntries_ = SnoozeEntries(hasDeadline_);
    snoozeSelected_ = -1;
    if (chosenSnoozeMinutes_) {
        for (std::size_t i = 0; i < snoozeEntries_.size(); ++i) {
            if (snoozeEntries_[i].minutes == *chosenSnoozeMinutes_) snoozeSelected_ = static_cast<int>(i);
        }
    }
    if (snoozeSelected_ < 0) {
        chosenSnoozeMinutes_.reset();
        snoozeSelected_ = DefaultSnoozeIndex(snoozeEntries_, remindInterval_);
    }
}

void ActionDialogModel::SelectRow(int row) {
    const bool ours = row >= 0 && row < static_cast<int>(rows_.size());
    selectedRow_ = -1;
    selectedEntry_ = 0;
    selected_.reset();
    if (!ours) return;
    // The row's entry as the list shows it; an entry withdrawn since the list
    // was drawn (its refresh still owed) is no longer there to be chosen.
    const EntryNumber entry = rows_[static_cast<std::size_t>(row)].entry;
    const auto listed = std::find_if(pending_->begin(), pending_->end(),
                                     [entry](const ActionRequest& action) { return action.entry == entry; });
    if (listed == pending_->end()) return;
    ActionRequestStore one;
    one.UpdateActions({*listed});
    selected_ = one.GetAction(listed->id);
    selectedRow_ = row;
    selectedEntry_ = entry;
}

void ActionDialogModel::ChooseSnooze(int index) {
    if (index < 0 || index >= static_cast<int>(snoozeEntries_.size())) return;
    snoozeSelected_ = index;
    chosenSnoozeMinutes_ = snoozeEntries_[static_cast<std::size_t>(index)].minutes;
}

const ActionRequest* ActionDialogModel::Selected() const { return selected_ ? &*selected_ : nullptr; }

bool ActionDialogModel::IsSensitive(ActionButton button) const {
    const ActionRequest* selected = Selected();
    switch (button) {
        case ActionButton::TakeAll: return !NothingPending();
        case ActionButton::Take: return selected != nullptr;
        case ActionButton::Cancel: return selected != nullptr && selected->cancellable;
        case ActionButton::Details: return selected != nullptr && static_cast<bool>(selected->preview);
        case ActionButton::Snooze: return NothingPending() || snoozeAllowed_;
    }
    return false;
}

std::optional<UICommand> ActionDialogModel::CommandFor(ActionButton button, Instant now) const {
    if (!IsSensitive(button)) return std::nullopt;
    const ActionRequest* selected = Selected();
    switch (button) {
        case ActionButton::TakeAll: return UICommand(UICommandType::TakeAll, 0, 0, 0, newestEntry_);
        case ActionButton::Take: return UICommand(UICommandType::TakeAction, selected->id, 0, 0, selected->entry);
        case ActionButton::Cancel: return UICommand(UICommandType::CancelAction, selected->id, 0, 0, selected->entry);
        case ActionButton::Details: return UICommand(UICommandType::ShowDetails, selected->id, 0, 0, selected->entry);
        case ActionButton::Snooze: {
            if (NothingPending() || snoozeSelected_ < 0) return std::nullopt;
            const SnoozeEntry& entry = snoozeEntries_[static_cast<std::size_t>(snoozeSelected_)];
            return UICommand(UICommandType::Snooze, 0, entry.minutes, SecondsUntil(earliestDeadline_, now));
        }
    }
    return std::nullopt;
}
