// The sample client's scenario reader and its documents in both directions.

#include <memory>

#include <gtest/gtest.h>

#include "base/time/TimeObject.h"
#include "base/xml/SimpleXML.h"
#include "client/ClientDocuments.h"
#include "client/Scenario.h"
#include "protocol/ActionRequest.h"
#include "protocol/ClientRequests.h"
#include "protocol/Documents.h"
#include "protocol/UIReports.h"

namespace {

struct BadScenario {
    const char* text;
    int line;
    const char* reason;
};

const BadScenario kBadScenarios[] = {
    {"at 1s action title=x", 1, "\"id=\" is missing"},
    {"at 1s action id=4x", 1, "not an ID"},
    {"at 1s action id=1 deadline=30s", 1, "must be relative"},
    {"at 1s action id=1 force", 1, "needs a deadline"},
    {"at 1s action id=1 colour=red", 1, "unknown argument \"colour\""},
    {"at 1s action id=1 force=yes deadline=+1s", 1, "is a flag"},
    {"at 1s action id=1 id=2", 1, "given twice"},
    {"at 1s action id=1 title=\"open", 1, "not closed"},
    {"at 1s remove id=1 type=action", 1, "Action, Offer, Message or All"},
    {"at 1s quiet-start start=+5s end=+1s", 1, "ends before it starts"},
    {"at 1s fly", 1, "unknown command \"fly\""},
    {"at 2s close\nat 3s quiet-end", 2, "nothing can follow"},
    {"at 5s quiet-end\n\nat 2s quiet-end", 3, "must not go backwards"},
    {"at 1x quiet-end", 1, "not a duration"},
    {"at 15 quiet-end", 1, "15 what? write 15s, 15m or 15h"},
    {"set remind-interval 15\nat 1s close", 1, "15 what? write 15s, 15m or 15h"},
    {"at 1s action id=1 deadline=+30", 1, "+30 what? write +30s, +30m or +30h"},
    {"at 1s expect RemindTime within=2.5", 1, "2.5 what? write 2.5s, 2.5m or 2.5h"},
    {"at 1s document\n| <ClientToUI>\n| <QuietModeEnd></QuietModeStart>\n| </ClientToUI>\nat 2s close", 3,
     "the document is not well-formed XML: mismatched tag"},
    {"at 1s document\n| <ClientToUI>\n|   <QuietModeEnd/>", 3, "the document is not well-formed XML: no element found"},
    {"and quiet-end", 1, "there is none yet"},
    {"at 1s mark a\nand quiet-end", 2, "only records"},
    {"at 1s quiet-end\nset use-locale true", 2, "before the first"},
    {"set use-locale maybe\nat 1s close", 1, "not true or false"},
    {"set colour red\nat 1s close", 1, "unknown setting"},
    {"file missing.xlat\nat 1s close", 1, "cannot read"},
    {"file ../x name=a/b\nat 1s close", 1, "not a plain file name"},
    {"at 1s document\nat 2s close", 1, "no \"|\" lines"},
    {"| <a/>", 1, "belongs under a \"document\""},
    {"at 1s expect Coffee", 1, "cannot expect"},
    {"at 1s quit", 1, "interactive"},
    {"# nothing but a comment", 1, "no \"at\" lines"},
};

TEST(Scenario, MalformedLinesNameFileLineAndReason) {
    for (const BadScenario& bad : kBadScenarios) {
        SCOPED_TRACE(bad.text);
        try {
            ParseScenario(bad.text, "/nowhere/bad.scenario");
            ADD_FAILURE() << "accepted";
        } catch (const ScenarioError& error) {
            EXPECT_EQ(error.line, bad.line);
            EXPECT_NE(error.reason.find(bad.reason), std::string::npos) << error.reason;
            EXPECT_EQ(error.Text().rfind("/nowhere/bad.scenario:" + std::to_string(bad.line) + ": ", 0), 0u);
        }
    }
}

TEST(Scenario, StepsJoinRecordsAndCarryDocumentsVerbatim) {
    const Scenario scenario = ParseScenario(
        "set remind-interval 15m  # a comment\n"
        "set use-locale false\n"
        "locale de_DE.UTF-8\n"
        "at 0s quiet-start end=+8s\n"
        "and   action id=7 title=\"Two \\\"words\\\"\" deadline=+2.5s force restart\n"
        "at 1.5s document\n"
        "| <ClientToUI>\n"
        "|   <QuietModeEnd></QuietModeEnd>\n"
        "|</ClientToUI>\n"
        "at 1.5s expect ActionTaken id=7 cancel=false within=500ms\n",
        "/nowhere/good.scenario");
    EXPECT_EQ(scenario.remindInterval, Milliseconds(900000));
    EXPECT_EQ(scenario.locale, "de_DE.UTF-8");
    EXPECT_FALSE(scenario.useLocale);
    EXPECT_TRUE(ParseScenario("at 0s close\n", "x").useLocale);
    ASSERT_EQ(scenario.steps.size(), 3u);
    ASSERT_EQ(scenario.steps[0].commands.size(), 2u);
    const ActionCommand& action = scenario.steps[0].commands[1].action;
    EXPECT_EQ(action.title, "Two \"words\"");
    EXPECT_EQ(action.deadline, Milliseconds(2500));
    EXPECT_TRUE(action.force && action.restart && !action.cancellable);
    EXPECT_EQ(scenario.steps[1].at, Milliseconds(1500));
    EXPECT_EQ(scenario.steps[1].commands[0].text, "<ClientToUI>\n  <QuietModeEnd></QuietModeEnd>\n</ClientToUI>\n");
    EXPECT_EQ(scenario.steps[2].commands[0].expect.within, Milliseconds(500));
    EXPECT_EQ(scenario.steps[2].commands[0].expect.cancel, false);
}

TEST(Scenario, TypedCommandsAndDurations) {
    EXPECT_EQ(ParseCommand("  open ").kind, Command::Kind::Open);
    EXPECT_EQ(ParseCommand("quit").kind, Command::Kind::Quit);
    EXPECT_THROW(ParseCommand("document"), ScenarioError);
    EXPECT_THROW(ParseCommand("expect ActionTaken"), ScenarioError);
    const std::pair<const char*, long long> kDurations[] = {
        {"250ms", 250}, {"2", 2000}, {"1.5s", 1500}, {"3m", 180000}, {"1h", 3600000}, {"0s", 0}};
    for (const auto& [text, millis] : kDurations) EXPECT_EQ(ParseDuration(text), Milliseconds(millis)) << text;
    for (const char* text : {"", "s", "1.2.3s", "-1s", "1d", "1 s", ".s"}) EXPECT_FALSE(ParseDuration(text)) << text;
}

TEST(ClientDocuments, RecordsShareOneDocumentAndReadBackAsSent) {
    const Scenario scenario = ParseScenario(
        "at 0s quiet-start start=+1s end=+60s\n"
        "and action id=42 title=\"A & B\" deadline=+30s force confirm=\"Sure?\"\n"
        "and remove id=9 type=Message\n",
        "x");
    const Instant now(1700000000LL * 1000000);
    const std::unique_ptr<XMLElement> root =
        SimpleXML::Parse(RecordsDocument(scenario.steps[0].commands, now));
    ASSERT_TRUE(root);
    EXPECT_EQ(root->Name().ToString(), "ClientToUI");
    ASSERT_EQ(root->Children().size(), 3u);
    QuietModeStart quiet;
    XMLSerialize(root->Children()[0], quiet);
    EXPECT_EQ(quiet.endTime.SecondsSinceEpoch(), 1700000060);
    ActionRequest action;
    XMLSerialize(root->Children()[1], action);
    EXPECT_EQ(action.id, 42u);
    EXPECT_EQ(action.title.ToString(), "A & B");
    EXPECT_EQ(action.Deadline().Get(), now + TimeInterval(30000000));
    EXPECT_TRUE(action.forceRun);
    EXPECT_EQ(action.preActionMessage.Get().ToString(), "Sure?");
    RemoveRequest remove;
    XMLLoad(root->Children()[2], remove);
    EXPECT_EQ(remove, RemoveRequest(RemoveRequest::Message, 9));
}

TEST(ClientDocuments, ReportsReadAsOneLineEach) {
    const auto line = [](const auto& record) { return ReadReports(ConvertToUIToClientXML(record).Str()).at(0).text; };
    EXPECT_EQ(line(ActionTaken(42, false)), "ActionTaken id=42 cancel=false");
    EXPECT_EQ(line(ActionTaken(7, true)), "ActionTaken id=7 cancel=true");
    EXPECT_EQ(line(RemindInterval(TimeInterval(900000000))), "RemindInterval interval=PT15M");
    EXPECT_EQ(ReadReports(ConvertToXML(ClientUIErrorMessage(ClientUIErrorMessage::FontError, "noFont \"x\"")).Str())
                  .at(0)
                  .text,
              "ClientUIErrorMessage code=1 debug=\"noFont \\\"x\\\"\"");
    EXPECT_EQ(ReadReports(ConvertToXML(ReadyForData{}).Str()).at(0).kind, "ReadyForData");
    EXPECT_THROW(ReadReports("no markup at all"), ReportUnreadable);
    EXPECT_THROW(ReadReports("<UIToClient><ActionTaken><ID>x</ID></ActionTaken></UIToClient>"), ReportUnreadable);
}

}  // namespace
