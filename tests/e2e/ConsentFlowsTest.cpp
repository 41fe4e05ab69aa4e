// The user's consent end to end: what the client does while a confirmation is
// open never takes an action whose message the user has not seen and
// accepted, and an action about to run cannot be snoozed. The real program,
// clicked through XTest.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/e2e/LiveProgram.h"

#include <X11/Xlib.h>

namespace {

constexpr char kConfirmation[] = "Confirmation Required";
constexpr std::size_t kConfirmationOk = 4;  // actiontitle, staticlabel, actionconfirmation, cancel, ok

std::string Texts(const std::vector<Report>& reports) {
    std::string texts;
    for (const Report& report : reports) texts += report.text + "; ";
    return texts;
}

// Brings `shell` above the other windows (there is no window manager), so a
// click meant for it is not taken by a dialog centred over it.
void Raise(LiveProgram& program, Window shell) {
    XRaiseWindow(program.X(), shell);
    XSync(program.X(), False);
}

// Clicks OK on the confirmation shown now and waits until it has gone.
void Accept(LiveProgram& program) {
    Window shell = 0;
    const std::vector<Window> confirmation = program.WaitForDialog(kConfirmation, &shell);
    ASSERT_EQ(confirmation.size(), 5u);
    Raise(program, shell);
    program.Click(confirmation[kConfirmationOk]);
    EXPECT_TRUE(program.WaitUntil([&] { return !program.IsMapped(shell); }));
}

void ExpectTaken(LiveProgram& program, const std::vector<unsigned long long>& ids) {
    for (const unsigned long long id : ids) {
        const std::optional<Report> taken = program.WaitFor("ActionTaken", id);
        EXPECT_TRUE(taken && !taken->cancel) << id;
    }
}

// A take-all asks for 2, the client withdraws 1 meanwhile: 3 still asks
// before anything is taken.
TEST(ConsentFlows, AWithdrawalDuringATakeAllSkipsNoConfirmation) {
    LiveProgram program;
    const ActionDialogWindows dialog = program.StartWithActions(
        {"action id=1 title=One", "action id=2 title=Two confirm=\"Sure about two?\"",
         "action id=3 title=Three confirm=\"Sure about three?\""});
    program.Click(dialog.takeAll);
    program.WaitForDialog(kConfirmation);
    program.Send({"remove id=1 type=Action"});
    EXPECT_EQ(Texts(program.ThreeTicks()), "");
    Accept(program);
    Accept(program);  // three's own confirmation, before anything is taken
    ExpectTaken(program, {2, 3});
    EXPECT_EQ(program.CloseAndWait(), 0);
}

// The confirmation of 2 is open when the quiet period ends (or its notice is
// dismissed): the action dialog stays disabled, so Take All does nothing, and
// OK takes 2 alone.
TEST(ConsentFlows, TheActionDialogStaysHeldUnderAnOpenConfirmation) {
    const struct {
        const char* name;
        std::vector<std::string> document;
        bool dismissNotice;
    } flows[] = {{"the quiet period ends", {"quiet-end"}, false},
                 {"a quiet period's notice is dismissed", {"quiet-start end=+1h"}, true}};
    for (const auto& flow : flows) {
        SCOPED_TRACE(flow.name);
        LiveProgram program;
        const ActionDialogWindows dialog = program.StartWithActions(
            {"action id=1 title=One confirm=\"Sure about one?\"", "action id=2 title=Two confirm=\"Sure about two?\""});
        program.ClickRow(dialog.list, 1);
        program.Click(dialog.take);
        program.WaitForDialog(kConfirmation);
        program.Send(flow.document);
        if (flow.dismissNotice) {
            const std::vector<Window> notice = program.WaitForDialog("Not Currently Available");  // staticlabel, ok
            ASSERT_EQ(notice.size(), 2u);
            program.Click(notice[1]);
        }
        EXPECT_EQ(Texts(program.ThreeTicks()), "");
        Raise(program, dialog.shell);  // Take All lies under the confirmation
        program.Click(dialog.takeAll);
        EXPECT_EQ(Texts(program.ThreeTicks()), "");
        EXPECT_EQ(program.TopLevelWindows(kConfirmation).size(), 1u);
        Accept(program);
        ExpectTaken(program, {2});
        EXPECT_EQ(Texts(program.ThreeTicks()), "");
        EXPECT_EQ(program.CloseAndWait(), 0);
    }
}

// A forced action due in 90 seconds: the snooze button takes no click.
TEST(ConsentFlows, AnActionDueWithinFiveMinutesCannotBeSnoozed) {
    LiveProgram program;
    const ActionDialogWindows dialog =
        program.StartWithActions({"action id=1 title=\"Restart now\" restart force deadline=+90s"});
    program.Click(dialog.snooze);
    EXPECT_EQ(Texts(program.ThreeTicks()), "");
    EXPECT_TRUE(program.IsMapped(dialog.shell));
    EXPECT_EQ(program.CloseAndWait(), 0);
}

}  // namespace
