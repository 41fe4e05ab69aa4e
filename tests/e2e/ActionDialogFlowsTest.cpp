// The action request dialog end to end: the real program, clicked through XTest.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <tuple>

#include "base/time/TimeText.h"
#include "base/time/XMLTime.h"
#include "client/OpenDialogRequest.h"
#include "tests/e2e/LiveProgram.h"

#include <X11/Xlib.h>

namespace {

constexpr char kTitle[] = "Action Requests";

// Wall-clock seconds since the epoch, cut like the times on the wire.
std::int64_t NowSeconds() {
    using namespace std::chrono;
    return duration_cast<seconds>(system_clock::now().time_since_epoch()).count();
}

// A RemindTime's instant (seconds since the epoch) or a RemindInterval's
// length (seconds), read back from the report's line.
std::int64_t ReportedSeconds(const Report& report) {
    const std::string& text = report.text;
    if (report.kind == "RemindTime") {
        const std::size_t open = text.find('"');
        return TextToTime(text.substr(open + 1, text.rfind('"') - open - 1)).SecondsSinceEpoch();
    }
    return XMLDurationToTimeInterval(text.substr(text.find('=') + 1)).Microseconds() / 1000000;
}

TEST(ActionDialogFlows, CancelOneTakeOneTakeAll) {
    LiveProgram program;
    const ActionDialogWindows dialog = program.StartWithActions(
        {"action id=1 title=\"One\" text=\"first\"", "action id=2 title=\"Two\" text=\"second\"",
         "action id=7 title=\"Seven\" text=\"x\" cancellable"});
    for (const auto& [row, button, id, cancel] : {std::tuple{2, dialog.cancel, 7, true}, {1, dialog.take, 2, false}}) {
        program.ClickRow(dialog.list, row);
        program.Click(button);
        const std::optional<Report> taken = program.WaitFor("ActionTaken", id);
        EXPECT_TRUE(taken && taken->cancel == cancel) << id;
    }
    program.Click(dialog.takeAll);
    EXPECT_TRUE(program.WaitFor("ActionTaken", 1));
    EXPECT_EQ(program.CloseAndWait(), 0);
}

// The snooze list shows about two rows; the default selection scrolls its row
// to the top, so the client's remembered interval decides what is in view:
// ten minutes shows "in 10 minutes", "in 15 minutes"; minus fifteen shows
// "15 minutes before deadline", "5 minutes before deadline".
struct SnoozeFlow {
    const char* name;
    int remindMinutes;
    std::optional<int> deadlineMinutes;  // from the moment the action is sent
    std::optional<std::size_t> row;      // the shown row clicked; none: the default
    int minutes;                         // what the snoozed entry stands for
    bool dueAtOnce;                      // the reminder has passed: no open request needed
};

const SnoozeFlow kSnoozeFlows[] = {
    {"default entry", 10, std::nullopt, std::nullopt, 10, false},
    {"chosen entry", 10, std::nullopt, 1, 15, false},
    {"chosen deadline entry", -15, 60, 1, -5, false},
    {"deadline entry already due", -15, 10, 0, -15, true},
};

TEST(ActionDialogFlows, SnoozeThenReopen) {
    for (const SnoozeFlow& flow : kSnoozeFlows) {
        SCOPED_TRACE(flow.name);
        LiveProgram program;
        Scenario scenario;
        scenario.remindInterval = std::chrono::minutes(flow.remindMinutes);
        std::string action = "action id=1 title=\"One\" text=\"first\"";
        if (flow.deadlineMinutes) action += " deadline=+" + std::to_string(*flow.deadlineMinutes) + "m";
        program.Start(scenario);
        const std::int64_t sending = NowSeconds();
        program.Send({action});
        const std::int64_t sent = NowSeconds();
        const ActionDialogWindows dialog = program.WaitForActionDialog();
        if (flow.row) program.ClickRow(dialog.snoozeList, *flow.row);
        const std::int64_t clicked = NowSeconds();
        program.Click(dialog.snooze);
        const std::optional<Report> at = program.WaitFor("RemindTime");
        const std::optional<Report> interval = program.WaitFor("RemindInterval");
        const std::int64_t reported = NowSeconds();
        ASSERT_TRUE(at && interval);
        // The program's clock reads whole seconds, a little behind ours. From
        // now: the tick's now, between the click and the reports. Before the
        // deadline: the click hands over the whole seconds left until it and
        // the tick adds them to its own now, so the deadline less the minutes,
        // and a second later for each second the tick came later.
        const std::int64_t shift = std::int64_t{flow.minutes} * 60;
        const std::int64_t fromSent = flow.deadlineMinutes.value_or(0) * 60 + shift;
        const std::int64_t low = flow.minutes > 0 ? clicked + shift - 1 : sending + fromSent;
        const std::int64_t high = flow.minutes > 0 ? reported + shift : sent + fromSent + reported - clicked + 1;
        EXPECT_GE(ReportedSeconds(*at), low);
        EXPECT_LE(ReportedSeconds(*at), high);
        EXPECT_EQ(ReportedSeconds(*interval), shift);
        EXPECT_TRUE(program.WaitUntil([&] { return !program.IsMapped(dialog.shell); })) << "still shown";
        if (!flow.dueAtOnce) {
            for (Window shell : program.TopLevelWindows(kTitle)) EXPECT_FALSE(program.IsMapped(shell));
            std::string error;
            EXPECT_EQ(SendOpenRequest(program.DisplayName(), kCeiling, error), 1) << error;
        }
        const ActionDialogWindows again = program.WaitForActionDialog();
        program.Click(again.takeAll);
        EXPECT_TRUE(program.WaitFor("ActionTaken", 1));
        EXPECT_EQ(program.TopLevelWindows(kTitle).size(), 1u);
        EXPECT_EQ(program.CloseAndWait(), 0);
    }
}

}  // namespace
