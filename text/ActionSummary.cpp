#include "text/ActionSummary.h"

#include <array>
#include <cstddef>
#include <string_view>

#include "base/time/Instant.h"
#include "protocol/NullOr.h"
#include "text/FormattedDeadline.h"
#include "text/UFormat.h"

namespace {

enum class Consequence { None, Restart, Shutdown };

// Less than this left before a deadline without ForceRun, and the user is
// told to act now.
constexpr TimeInterval kNowThreshold(300000000);

// Cells in the order of the grid: for no deadline and a deadline within
// reach, four per consequence (save off/on, then the same with a deadline);
// then two per consequence for "now", then two per consequence for
// "automatic". Cell 0, nothing to say, is the empty text.
const char* const kSingleActionTexts[] = {
    "",
    "You should save your work before taking this action.",
    "You must take this action within {DeadlineText}.",
    "You should save your work before taking this action.  You must take this action within {DeadlineText}.",
    "This action will require a system restart.",
    "You should save your work before taking this action, as it will require a system restart.",
    "This action will require a system restart.  You must take this action within {DeadlineText}.",
    "You should save your work before taking this action, as it will require a system restart.  You must take this action within {DeadlineText}.",
    "This action will require a system shutdown.",
    "You should save your work before taking this action, as it will require a system shutdown.",
    "This action will require a system shutdown.  You must take this action within {DeadlineText}.",
    "You should save your work before taking this action, as it will require a system shutdown.  You must take this action within {DeadlineText}.",
    "You must take this action now.",
    "You should save your work before taking this action.  You must take this action now.",
    "This action will require a system restart.  You must take this action now.",
    "You should save your work before taking this action, as it will require a system restart.  You must take this action now.",
    "This action will require a system shutdown.  You must take this action now.",
    "You should save your work before taking this action, as it will require a system shutdown.  You must take this action now.",
    "This action will run automatically in {DeadlineText}.",
    "You should save your work before taking this action.  This action will run automatically in {DeadlineText}.",
    "This action will require a system restart.  This action will run automatically in {DeadlineText}.",
    "You should save your work before taking this action, as it will require a system restart.  This action will run automatically in {DeadlineText}.",
    "This action will require a system shutdown.  This action will run automatically in {DeadlineText}.",
    "You should save your work before taking this action, as it will require a system shutdown.  This action will run automatically in {DeadlineText}.",
};

// The selected-actions wording (cells 1 to 23), then the these/pending
// wording (cells 24 to 46), in the same order as the one-action grid.
const char* const kSeveralActionsTexts[] = {
    "",
    "You should save your work before taking the selected actions.",
    "There is at least one selected action you must take within {DeadlineText}.",
    "You should save your work before taking the selected actions.  There is at least one selected action you must take within {DeadlineText}.",
    "The selected actions will require a system restart when they are complete.",
    "You should save your work before taking the selected actions, as they will require a system restart when they are complete.",
    "The selected actions will require a system restart when they are complete.  There is at least one selected action you must take within {DeadlineText}.",
    "You should save your work before taking the selected actions, as they will require a system restart when they are complete.  There is at least one selected action you must take within {DeadlineText}.",
    "The selected actions will require a system shutdown when they are complete.",
    "You should save your work before taking the selected actions, as they will require a system shutdown when they are complete.",
    "The selected actions will require a system shutdown when they are complete.  There is at least one selected action you must take within {DeadlineText}.",
    "You should save your work before taking the selected actions, as they will require a system shutdown when they are complete.  There is at least one selected action you must take within {DeadlineText}.",
    "There is at least one selected action you must take now.",
    "You should save your work before taking the selected actions.  There is at least one selected action you must take now.",
    "The selected actions will require a system restart when they are complete.  There is at least one selected action you must take now.",
    "You should save your work before taking the selected actions, as they will require a system restart when they are complete.  There is at least one selected action you must take now.",
    "The selected actions will require a system shutdown when they are complete.  There is at least one selected action you must take now.",
    "You should save your work before taking the selected actions, as they will require a system shutdown when they are complete.  There is at least one selected action you must take now.",
    "At least one of the selected actions will run automatically in {DeadlineText}.",
    "You should save your work before taking the selected actions.  At least one of the selected actions will run automatically in {DeadlineText}.",
    "The selected actions will require a system restart when they are complete.  At least one of the selected actions will run automatically in {DeadlineText}.",
    "You should save your work before taking the selected actions, as they will require a system restart when they are complete.  At least one of the selected actions will run automatically in {DeadlineText}.",
    "The selected actions will require a system shutdown when they are complete.  At least one of the selected actions will run automatically in {DeadlineText}.",
    "You should save your work before taking the selected actions, as they will require a system shutdown when they are complete.  At least one of the selected actions will run automatically in {DeadlineText}.",
    "You should save your work before taking these actions.",
    "There is at least one action you must take within {DeadlineText}.",
    "You should save your work before taking these actions.  There is at least one action you must take within {DeadlineText}.",
    "The pending actions will require a system restart when they are complete.",
    "You should save your work before taking these actions, as they will require a system restart when they are complete.",
    "The pending actions will require a system restart when they are complete.  There is at least one action you must take within {DeadlineText}.",
    "You should save your work before taking these actions, as they will require a system restart when they are complete.  There is at least one action you must take within {DeadlineText}.",
    "The pending actions will require a system shutdown when they are complete.",
    "You should save your work before taking these actions, as they will require a system shutdown when they are complete.",
    "The pending actions will require a system shutdown when they are complete.  There is at least one action you must take within {DeadlineText}.",
    "You should save your work before taking these actions, as they will require a system shutdown when they are complete.  There is at least one action you must take within {DeadlineText}.",
    "There is at least one action you must take now.",
    "You should save your work before taking these actions.  There is at least one action you must take now.",
    "The pending actions will require a system restart when they are complete.  There is at least one action you must take now.",
    "You should save your work before taking these actions, as they will require a system restart when they are complete.  There is at least one action you must take now.",
    "The pending actions will require a system shutdown when they are complete.  There is at least one action you must take now.",
    "You should save your work before taking these actions, as they will require a system shutdown when they are complete.  There is at least one action you must take now.",
    "At least one of these actions will run automatically in {DeadlineText}.",
    "You should save your work before taking these actions.  At least one of these actions will run automatically in {DeadlineText}.",
    "The pending actions will require a system restart when they are complete.  At least one of these actions will run automatically in {DeadlineText}.",
    "You should save your work before taking these actions, as they will require a system restart when they are complete.  At least one of these actions will run automatically in {DeadlineText}.",
    "The pending actions will require a system shutdown when they are complete.  At least one of these actions will run automatically in {DeadlineText}.",
    "You should save your work before taking these actions, as they will require a system shutdown when they are complete.  At least one of these actions will run automatically in {DeadlineText}.",
};

constexpr std::size_t kCells = sizeof kSingleActionTexts / sizeof kSingleActionTexts[0];
static_assert(kCells == 24, "one text per cell of the grid");
static_assert(sizeof kSeveralActionsTexts / sizeof kSeveralActionsTexts[0] == 2 * kCells - 1,
              "the empty text once, then both wordings");

// A grid text and whether it has a {DeadlineText} to fill. The effective text
// is looked up each time, so the table holds only the English keys.
struct SummaryText {
    const char* english = "";
    bool hasDeadlineText = false;
};

template <std::size_t N>
std::array<SummaryText, N> MakeSummaryTable(const char* const (&texts)[N]) {
    std::array<SummaryText, N> table;
    for (std::size_t i = 0; i < N; ++i) {
        table[i].english = texts[i];
        table[i].hasDeadlineText = std::string_view(texts[i]).find("{DeadlineText}") != std::string_view::npos;
    }
    return table;
}

const std::array<SummaryText, kCells>& SingleActionTable() {
    static const std::array<SummaryText, kCells> table = MakeSummaryTable(kSingleActionTexts);
    return table;
}

const std::array<SummaryText, 2 * kCells - 1>& SeveralActionsTable() {
    static const std::array<SummaryText, 2 * kCells - 1> table = MakeSummaryTable(kSeveralActionsTexts);
    return table;
}

// What a summary says, before it is put into words.
struct SummaryFacts {
    bool save = false;
    Consequence consequence = Consequence::None;
    NullOr<Instant> deadline;
    bool automatic = false;  // ForceRun of the action that holds the deadline
    // Read once, so that the sentence chosen and the deadline text in it
    // agree even across a second boundary.
    Instant now = Instant::Now();
};

std::size_t GridCell(const SummaryFacts& facts) {
    const std::size_t save = facts.save ? 1 : 0;
    const std::size_t consequence = static_cast<std::size_t>(facts.consequence);
    if (facts.deadline.IsNull()) {
        return consequence * 4 + save;
    }
    if (facts.automatic) {
        return 18 + consequence * 2 + save;
    }
    // Exactly five minutes away still counts as "within".
    if (*facts.deadline < facts.now + kNowThreshold) {
        return 12 + consequence * 2 + save;
    }
    return consequence * 4 + 2 + save;
}

AutoUString<UTF8> Render(const SummaryText& text, const SummaryFacts& facts) {
    const FormatPair format = UFormat(text.english, text.english);
    if (!text.hasDeadlineText) {
        return MakeUString(FormatPlusArguments(format));
    }
    const AutoUString<UTF8> deadline = FormattedDeadline(*facts.deadline, facts.now, facts.automatic, false);
    return MakeUString(FormatPlusArguments(format, deadline));
}

}  // namespace

AutoUString<UTF8> ActionSummary(const ActionRequest& action) {
    SummaryFacts facts;
    facts.save = action.requestSave;
    facts.consequence = action.restart    ? Consequence::Restart
                        : action.shutdown ? Consequence::Shutdown
                                          : Consequence::None;
    facts.deadline = action.Deadline();
    facts.automatic = action.forceRun;
    return Render(SingleActionTable()[GridCell(facts)], facts);
}

AutoUString<UTF8> ActionSummary(const std::set<unsigned long long>& ids, const ActionRequestStore& store,
                                bool wholeList) {
    SummaryFacts facts;
    bool restart = false;
    bool shutdown = false;
    for (const unsigned long long id : ids) {
        const ActionRequest& action = store.GetAction(id);
        facts.save = facts.save || action.requestSave;
        restart = restart || action.restart;
        shutdown = shutdown || action.shutdown;
        const NullOr<Instant> deadline = action.Deadline();
        // Only a strictly earlier deadline takes over, so among equals the
        // lowest ID keeps it, and with it the say over ForceRun.
        if (!deadline.IsNull() && (facts.deadline.IsNull() || *deadline < *facts.deadline)) {
            facts.deadline = deadline;
            facts.automatic = action.forceRun;
        }
    }
    facts.consequence = shutdown ? Consequence::Shutdown : restart ? Consequence::Restart : Consequence::None;
    const std::size_t cell = GridCell(facts);
    const std::size_t entry = cell == 0 ? 0 : cell + (wholeList ? kCells - 1 : 0);
    return Render(SeveralActionsTable()[entry], facts);
}
