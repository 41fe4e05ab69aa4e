// The action request dialog's rules without a display: which action stays
// chosen, which snooze entries are offered and chosen, and what each press asks.

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "actions/PendingActions.h"
#include "app/ActionDialogModel.h"
#include "base/time/Clock.h"

namespace {

const Instant kNow(1700000000LL * kMicrosecondsPerSecond);
constexpr std::int64_t kNoDeadline = -1;

ActionRequest Action(unsigned long long id, const char* title, std::int64_t secondsLeft = kNoDeadline,
                     bool forced = false) {
    ActionRequest action;
    action.id = id;
    action.title = SharedUString<UTF8>(title);
    action.forceRun = forced;
    if (secondsLeft != kNoDeadline) {
        action.deadline = TimeObject(kNow + TimeInterval(secondsLeft * kMicrosecondsPerSecond), TimeZone(0));
    }
    return action;
}

class Model : public ::testing::Test {
protected:
    void Open(std::vector<ActionRequest> pending, bool snoozable = true) {
        ReplaceActions(pending);
        model.Open(TimeInterval(300 * kMicrosecondsPerSecond), snoozable);
        model.Rebuild(actions, kNow);
    }
    void Rebuild() { model.Rebuild(actions, kNow); }
    std::string Chosen() const {
        return model.Selected() != nullptr ? std::string(model.Selected()->title.View()) : "";
    }

    ScopedClockOverride clock_{kNow};
    ActionDialogModel model;
};

TEST_F(Model, TheChoiceFollowsItsActionAndNothingElseBecomesChosen) {
    struct Case { const char* what; std::vector<ActionRequest> before; int row; std::vector<unsigned> kept;
                  std::vector<ActionRequest> added; std::string chosen; int row_after; };
    const Case cases[] = {
        {"withdrawn, another added: none", {Action(1, ""), Action(2, "Alpha"), Action(3, "Bravo")}, 1, {0, 1},
         {Action(4, "Charlie")}, "", -1},
        {"row 0 withdrawn: none, not the next", {Action(1, "Alpha"), Action(2, "Bravo")}, 0, {1}, {}, "", -1},
        {"a shorter list that holds it: its new row", {Action(1, "Alpha"), Action(2, "Bravo"), Action(3, "Charlie")},
         2, {0, 2}, {}, "Charlie", 1},
        {"a new entry of its ID stands in its row: none", {Action(1, "Alpha"), Action(2, "Bravo")}, 1, {0, 1},
         {Action(2, "Bravo again")}, "", -1},
        {"new actions around it: unchanged", {Action(5, "Echo")}, 0, {0}, {Action(1, "Alpha"), Action(9, "India")},
         "Echo", 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Open(c.before);
        model.SelectRow(c.row);
        std::vector<ActionRequest> after;
        for (unsigned keep : c.kept) after.push_back(actions[keep]);
        actions = after;
        for (const ActionRequest& added : c.added) AppendAction(added);
        Rebuild();
        EXPECT_EQ(Chosen(), c.chosen);
        EXPECT_EQ(model.SelectedRow(), c.row_after);
    }
    // Once no longer chosen it stays so, even when its entry is listed again.
    Open({Action(1, "Alpha")});
    model.SelectRow(0);
    AppendAction(Action(1, "Alpha again"));
    Rebuild();
    actions.pop_back();
    Rebuild();
    EXPECT_EQ(Chosen(), "");
    // A row still drawn whose entry was withdrawn before the list was redrawn.
    Open({Action(1, "Alpha"), Action(2, "Bravo")});
    actions.erase(actions.begin());
    model.SelectRow(0);
    EXPECT_EQ(Chosen(), "");
    EXPECT_EQ(model.SelectedRow(), -1);
    model.SelectRow(1);
    EXPECT_EQ(Chosen(), "Bravo");
}

TEST_F(Model, PressesActOnTheChosenEntryAndTakeAllOnWhatWasShown) {
    Open({Action(5, "first"), Action(5, "second"), Action(7, "")});
    EXPECT_FALSE(model.CommandFor(ActionButton::Take, kNow));  // nothing chosen
    model.SelectRow(0);
    const UICommand take = *model.CommandFor(ActionButton::Take, kNow);
    EXPECT_EQ(take.id, 5u);
    EXPECT_EQ(take.entry, actions[1].entry);
    const UICommand all = *model.CommandFor(ActionButton::TakeAll, kNow);
    AppendAction(Action(8, "arrives after the last refresh"));
    EXPECT_EQ(all.entry, actions[2].entry);
    EXPECT_FALSE(model.CommandFor(ActionButton::Cancel, kNow));  // not cancellable
}

TEST_F(Model, SnoozeEntriesAreOfferedAsListed) {
    const std::vector<std::pair<std::string, int>> fromNow = {
        {"in 1 minute", 1},    {"in 5 minutes", 5}, {"in 10 minutes", 10}, {"in 15 minutes", 15},
        {"in 30 minutes", 30}, {"in 45 minutes", 45}, {"in 1 hour", 60},   {"in 2 hours", 120},
        {"in 4 hours", 240},   {"in 6 hours", 360}, {"in 8 hours", 480},   {"in 16 hours", 960},
        {"in 1 day", 1440},    {"in 2 days", 2880}, {"in 3 days", 4320},   {"in 4 days", 5760},
        {"in 5 days", 7200}};
    auto listed = [&] {
        std::vector<std::pair<std::string, int>> entries;
        for (const SnoozeEntry& entry : model.SnoozeList()) entries.emplace_back(entry.text, entry.minutes);
        return entries;
    };
    Open({Action(1, "no deadline")});
    EXPECT_EQ(listed(), fromNow);
    EXPECT_EQ(model.SnoozeList()[static_cast<std::size_t>(model.SnoozeSelected())].minutes, 5);
    Open({Action(1, "in two hours", 7200)});
    std::vector<std::pair<std::string, int>> withDeadline = {{"15 minutes before deadline", -15},
                                                             {"5 minutes before deadline", -5}};
    withDeadline.insert(withDeadline.end(), fromNow.begin(), fromNow.end());
    EXPECT_EQ(listed(), withDeadline);
}

TEST_F(Model, SnoozingIsOfferedOnlyWhenNoDeadlineIsNear) {
    struct Case { const char* what; std::vector<ActionRequest> pending; bool snoozable, offered; };
    const Case cases[] = {
        {"no deadline", {Action(1, "a")}, true, true},
        {"not allowed by the client", {Action(1, "a")}, false, false},
        {"forced in 90 s (listed as five minutes away)", {Action(1, "a", 90, true)}, true, false},
        {"4:59 away", {Action(1, "a", 299)}, true, false},
        {"exactly five minutes away", {Action(1, "a", 300)}, true, true},
        {"past, not forced", {Action(1, "a", -60)}, true, false},
        {"untitled and near", {Action(1, "a", 3600), Action(2, "", 60)}, true, false},
        {"an earlier entry of a listed ID, near", {Action(1, "a", 60, true), Action(1, "b", 3600)}, true, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Open(c.pending, c.snoozable);
        EXPECT_EQ(model.SnoozeAllowed(), c.offered);
        EXPECT_EQ(model.IsSensitive(ActionButton::Snooze), c.offered);
        EXPECT_EQ(model.CommandFor(ActionButton::Snooze, kNow).has_value(), c.offered);
    }
}

TEST_F(Model, TheSnoozeChoiceSurvivesRefreshesAndCountsFromTheEarliestDeadline) {
    Open({Action(1, "a", 7200), Action(2, "b", 3600)});
    model.ChooseSnooze(0);  // "15 minutes before deadline"
    AppendAction(Action(3, "c"));
    Rebuild();
    const UICommand snooze = *model.CommandFor(ActionButton::Snooze, kNow);
    EXPECT_EQ(std::make_pair(snooze.minutes, snooze.seconds), std::make_pair(-15, 3600u));
    model.ChooseSnooze(4);  // "in 10 minutes"
    ReplaceActions({Action(3, "c")});  // the deadline entries go; the choice stays
    Rebuild();
    EXPECT_EQ(model.CommandFor(ActionButton::Snooze, kNow)->minutes, 10);
    model.Open(TimeInterval(3600 * kMicrosecondsPerSecond), true);  // a new dialog: the remembered interval
    Rebuild();
    EXPECT_EQ(model.CommandFor(ActionButton::Snooze, kNow)->minutes, 60);
}

}  // namespace
