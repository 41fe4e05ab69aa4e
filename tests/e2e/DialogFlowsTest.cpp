// The details, confirmation, message and quiet-period windows end to end, in
// English and under a translation, and every dialog that cannot be built:
// the real program, clicked through XTest.
#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <sstream>

#include "tests/e2e/LiveProgram.h"
#include "tests/support/TestData.h"

#include <X11/Xlib.h>

namespace {

std::string Texts(const std::vector<Report>& reports) {
    std::string texts;
    for (const Report& report : reports) texts += report.text + "; ";
    return texts;
}

bool Gone(LiveProgram& program, const std::string& title) {
    return program.WaitUntil([&] { return program.TopLevelWindows(title).empty(); });
}

// Messages expire, are withdrawn or stay; then a quiet period comes over the
// action dialog, which brings the forced action first: the notice disables the
// dialog until its "OK" or the period's end, and the action is taken once
// the period ends, once.
TEST(DialogFlows, MessagesThenAQuietPeriodThatHoldsAForcedActionBack) {
    LiveProgram program;
    program.Start();
    program.Send({"message id=1 title=\"Brief\" text=\"goes by itself\" timeout=4s",
                  "message id=2 title=\"Withdrawn\" text=\"goes when removed\"",
                  "message id=3 title=\"Build\" completion"});
    for (const char* title : {"Brief", "Withdrawn", "Vorkan notification:"}) {
        EXPECT_EQ(program.WaitForDialog(title).size(), 2u) << title;  // actionmessage, dismiss
    }
    EXPECT_TRUE(Gone(program, "Brief"));
    program.Send({"remove id=2 type=Message"});
    EXPECT_TRUE(Gone(program, "Withdrawn"));
    EXPECT_EQ(program.TopLevelWindows("Vorkan notification:").size(), 1u);
    program.Send({"action id=4 title=\"The forced action\" deadline=+0s force", "quiet-start end=+1h"});
    const ActionDialogWindows dialog = program.WaitForActionDialog();
    const std::vector<Window> notice = program.WaitForDialog("Not Currently Available");  // staticlabel, ok
    ASSERT_EQ(notice.size(), 2u);
    EXPECT_EQ(Texts(program.ThreeTicks()), "");
    program.Click(notice[1]);
    EXPECT_TRUE(Gone(program, "Not Currently Available"));
    program.ClickRow(dialog.list, 0);
    // A second period over the shown dialog ends on the client's word: the
    // notice goes, the dialog takes clicks again, and the forced action is due.
    program.Send({"action id=5 title=\"Fifth\"", "action id=6 title=\"Sixth\"", "quiet-start end=+1h"});
    EXPECT_EQ(program.WaitForDialog("Not Currently Available").size(), 2u);
    program.Send({"quiet-end"});
    EXPECT_TRUE(Gone(program, "Not Currently Available"));
    const std::optional<Report> taken = program.WaitFor("ActionTaken", 4);
    EXPECT_TRUE(taken && !taken->cancel);
    program.ClickRow(dialog.list, 1);  // the kept selection is row 0
    EXPECT_EQ(Texts(program.ThreeTicks()), "");
    EXPECT_EQ(program.CloseAndWait(), 0);
}

TEST(DialogFlows, TheLocalesTranslationRetitlesEveryFixedWindow) {
    if (!LocaleInstalled("de_DE.UTF-8")) GTEST_SKIP() << "locale de_DE.UTF-8 is not installed";
    std::stringstream translation;
    translation << std::ifstream(ZAM_SOURCE_DIR "/examples/de.xlat").rdbuf();
    Scenario german;
    german.locale = "de_DE.UTF-8";
    german.useLocale = true;
    german.files = {{"de.xlat", "", translation.str()}};
    LiveProgram program;
    const ActionDialogWindows dialog = program.StartWithActions(
        {"action id=1 title=\"Die erste Aktion\" preview=\"echo eins\" confirm=\"Sicher?\""}, german,
        "Aktionsanforderungen");
    program.Click(dialog.takeAll);
    const std::vector<Window> confirmation = program.WaitForDialog("Bestätigung erforderlich");
    ASSERT_EQ(confirmation.size(), 5u);
    program.Click(confirmation[3]);
    EXPECT_TRUE(Gone(program, "Bestätigung erforderlich"));
    ASSERT_TRUE(program.ClickRow(dialog.list, 0));
    program.Click(dialog.details);
    EXPECT_EQ(program.WaitForDialog("Vorschau des Aktionsskripts").size(), 2u);
    // Only now: the windows stand in the middle of the screen, over each other.
    program.Send({"message id=2 title=\"Grüße\" text=\"Hallo\"", "message id=3 title=\"Eins\" completion"});
    EXPECT_EQ(program.WaitForDialog("Grüße").size(), 2u);  // the client's own title
    EXPECT_EQ(program.WaitForDialog("Vorkan-Mitteilung:").size(), 2u);
    program.Send({"quiet-start end=+1h"});
    EXPECT_EQ(program.WaitForDialog("Derzeit nicht verfügbar").size(), 2u);
    EXPECT_EQ(program.CloseAndWait(), 0);
}

// "UseLocale" off keeps the "C" locale yet loads the brand file: a fixed text
// of the dialog translated into one that "C" cannot show stops its building.
struct Unbuildable {
    const char* dialog;
    const char* text;
    std::vector<std::string> commands;
    Window ActionDialogWindows::*open;  // the button that opens it (after choosing the row), if any
};

TEST(DialogFlows, ADialogThatCannotBeBuiltIsReportedTwiceAndEndsTheProgramWith0) {
    const Unbuildable rows[] = {
        {"ActionRequestDialog", "Action Requests", {"action id=1 title=One"}, nullptr},
        {"ActionDetailsDialog", "Action Script Preview", {"action id=1 title=\"The only action\" preview=p"},
         &ActionDialogWindows::details},
        {"ConfirmationDialog", "Confirmation Required", {"action id=1 title=One confirm=c"},
         &ActionDialogWindows::take},
        {"MessageDialog", "Vorkan notification:", {"message id=1 title=One completion"}, nullptr},
        // Its title replaced in place by one "C" cannot show.
        {"MessageDialog", "unused", {"message id=1 title=One text=a", "message id=1 title=\"Gr\xc3\xb6\xc3\x9f" "e\" text=b"},
         nullptr},
        {"QuietModeDialog", "Not Currently Available", {"action id=1 title=One", "quiet-start end=+1h"}, nullptr},
    };
    // All at once: each waits for ticks and for the program's pause on its way out.
    std::array<LiveProgram, std::size(rows)> programs;
    for (std::size_t i = 0; i < programs.size(); ++i) {
        Scenario scenario;
        scenario.useLocale = false;
        scenario.files = {{"_brand.xlat", "", std::string(rows[i].text) + "\tAusgew\xc3\xa4hlt\n"}};
        programs[i].Start(scenario);
        programs[i].Send(rows[i].commands);
    }
    for (std::size_t i = 0; i < programs.size(); ++i) {
        if (rows[i].open == nullptr) continue;
        const ActionDialogWindows dialog = programs[i].WaitForActionDialog();
        programs[i].ClickRow(dialog.list, 0);
        programs[i].Click(dialog.*rows[i].open);
    }
    for (std::size_t i = 0; i < programs.size(); ++i) {
        SCOPED_TRACE(rows[i].dialog);
        const auto [reports, status] = programs[i].UntilItEnds();
        const std::string error = "ClientUIErrorMessage code=2 debug=\"" + std::string(rows[i].dialog) + "\"; ";
        EXPECT_EQ(Texts(reports), error + error);
        EXPECT_EQ(status, 0);
    }
}

// An accented title with UseLocale false: the program cannot show it in the
// "C" locale, tells the client which dialog (twice) and ends with 0.
TEST(DialogFlows, AnActionTitleTheLocaleCannotShowIsReportedAndEndsTheProgramWith0) {
    Scenario plain;
    plain.useLocale = false;
    LiveProgram program;
    program.Start(plain);
    program.Send({"action id=1 title=\"Gr\xc3\xb6\xc3\x9f" "e \xc3\xa4ndern\""});
    const auto [reports, status] = program.UntilItEnds(std::chrono::seconds(10));
    const std::string error = "ClientUIErrorMessage code=2 debug=\"ActionRequestDialog\"; ";
    EXPECT_EQ(Texts(reports), error + error);
    EXPECT_EQ(status, 0);
}

// A title of 500 characters: its confirmation lies wholly on the screen and
// its "OK" takes the action.
TEST(DialogFlows, AConfirmationWithALongTitleLiesOnTheScreenAndIsAnswered) {
    std::string title;
    while (title.size() < 500) title += "Long title ";
    title.resize(500);
    LiveProgram program;
    const ActionDialogWindows dialog =
        program.StartWithActions({"action id=1 title=\"" + title + "\" confirm=\"Sure?\""});
    program.Click(dialog.takeAll);
    Window shell = 0;
    const std::vector<Window> confirmation = program.WaitForDialog("Confirmation Required", &shell);
    ASSERT_EQ(confirmation.size(), 5u);
    XWindowAttributes root{}, place{};
    XGetWindowAttributes(program.X(), DefaultRootWindow(program.X()), &root);
    XGetWindowAttributes(program.X(), shell, &place);
    int x = 0, y = 0;
    Window child = 0;
    XTranslateCoordinates(program.X(), shell, root.root, 0, 0, &x, &y, &child);
    EXPECT_TRUE(x >= 0 && y >= 0 && x + place.width <= root.width && y + place.height <= root.height)
        << place.width << "x" << place.height << " at " << x << "," << y;
    program.Click(confirmation[4]);
    const std::optional<Report> taken = program.WaitFor("ActionTaken", 1);
    EXPECT_TRUE(taken && !taken->cancel);
    EXPECT_EQ(program.CloseAndWait(), 0);
}

}  // namespace
