#pragma once

// What the action request dialog lists and allows, free of X: its rows, which
// action and which snooze entry are chosen, which buttons may be pressed, and
// the command each press queues. The X dialog draws one of these; the
// dispatch tests drive one without a display.
//
// The chosen action is an entry of the pending list, not a row index: it
// stays chosen while that entry is listed, on whatever row it moves to, and
// nothing else ever becomes chosen by itself.

#include <optional>
#include <vector>

#include "actions/ActionRequestStore.h"
#include "app/SnoozeChoices.h"
#include "base/time/Instant.h"
#include "pipe/UICommand.h"
#include "protocol/ActionRequest.h"

// One listed row: the latest pending entry of its ID, with a title.
struct ActionRow {
    unsigned long long id;
    EntryNumber entry;
};

// The dialog's buttons.
enum class ActionButton { TakeAll, Take, Cancel, Details, Snooze };

class ActionDialogModel {
public:
    // A dialog being shown anew: the snooze list preselects the entry nearest
    // `remindInterval`, and snoozing is offered only if `snoozable`. The
    // chosen action is kept from the last dialog.
    void Open(TimeInterval remindInterval, bool snoozable);

    // Lists the pending entries as they stand at `now`: rows in ascending ID
    // order from a fresh store, the working flags, the snooze entries. The
    // chosen action stays chosen if it is still listed, else none is. The
    // store is handed back for drawing the rows and not kept: a copy of every
    // pending action for as long as the dialog shows would cost more than the
    // rest of the model. `pending` must outlive the model (it is the pending
    // list) and is read again when a row is chosen.
    ActionRequestStore Rebuild(const std::vector<ActionRequest>& pending, Instant now);

    // Chooses the action on `row`; a row that is not one of ours, or whose
    // entry has left the pending list since the last rebuild, chooses none.
    void SelectRow(int row);
    // Chooses the snooze entry at `index`; it stays chosen through refreshes
    // for as long as it is offered.
    void ChooseSnooze(int index);

    // The command a press of `button` queues, if any. Take, Cancel and
    // Details act on the chosen entry; Take All covers every entry up to the
    // newest one listed or pending when the dialog was last rebuilt; Snooze
    // carries the chosen entry's minutes and the seconds until the earliest
    // deadline, and as "Close" (nothing pending) queues nothing.
    std::optional<UICommand> CommandFor(ActionButton button, Instant now) const;

    const std::vector<ActionRow>& Rows() const noexcept { return rows_; }
    // The chosen action's row, or -1.
    int SelectedRow() const noexcept { return selectedRow_; }
    // The chosen action as listed, or null.
    const ActionRequest* Selected() const;

    // Nothing is pending: the snooze button reads "Close" and only hides.
    bool NothingPending() const noexcept { return nothingPending_; }
    bool IsSensitive(ActionButton button) const;
    // Some pending action carries a script preview: the details button shows.
    bool DetailsAvailable() const noexcept { return detailsAvailable_; }
    bool SnoozeAllowed() const noexcept { return snoozeAllowed_; }
    bool HasDeadline() const noexcept { return hasDeadline_; }
    // The earliest deadline as listed; the largest instant when none.
    Instant EarliestDeadline() const noexcept { return earliestDeadline_; }

    const std::vector<SnoozeEntry>& SnoozeList() const noexcept { return snoozeEntries_; }
    // The snooze entry chosen, by the user or by default; -1 when none.
    int SnoozeSelected() const noexcept { return snoozeSelected_; }

private:
    void RebuildSnoozeList();

    const std::vector<ActionRequest>* pending_ = nullptr;
    bool nothingPending_ = true;
    std::vector<ActionRow> rows_;
    // The chosen action as listed (its deadline as the store moved it).
    std::optional<ActionRequest> selected_;
    EntryNumber selectedEntry_ = 0;
    int selectedRow_ = -1;
    EntryNumber newestEntry_ = 0;

    TimeInterval remindInterval_{300 * kMicrosecondsPerSecond};
    bool snoozable_ = false;
    bool snoozeAllowed_ = false;
    bool detailsAvailable_ = false;
    bool hasDeadline_ = false;
    Instant earliestDeadline_;

    std::vector<SnoozeEntry> snoozeEntries_;
    int snoozeSelected_ = -1;
    // The minutes of the entry the user picked in this dialog, if any.
    std::optional<std::int32_t> chosenSnoozeMinutes_;
};
