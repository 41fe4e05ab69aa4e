// Every text of the catalogue, the summary grids, the deadline texts and the
// day names, rendered under tests/data/translator.xlat. The file was written
// from the English texts independently of the code. Each translation is the
// English text behind a tag, "[FunctionName] " for the catalogue and "[T] "
// for the rest (a few reorder their placeholders), so a text in the code that
// differs by one character stays English, and a function showing another
// function's text shows the wrong tag.
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>

#include "base/files/FileLocation.h"
#include "base/time/Clock.h"
#include "tests/base/time/ScopedTZ.h"
#include "tests/support/TestData.h"
#include "text/ActionSummary.h"
#include "text/FormatFile.h"
#include "text/FormattedDeadline.h"
#include "text/FormattedValues.h"
#include "text/LocalizedStrings.h"

namespace {

const Instant kNow(1795348800LL * 1000000);  // Sunday 2026-11-22 12:00:00 UTC
constexpr std::int64_t kSecond = 1000000, kMinute = 60 * kSecond, kDay = 1440 * kMinute;

std::string Text(const AutoNullTerminated<char>& text) { return std::string(text.View()); }
std::string Text(const AutoUString<UTF8>& text) { return text.Str(); }

class TranslatorTest : public ::testing::Test {
protected:
    // Renders with the translation file at the head of the global context.
    static std::string Translated(const std::function<std::string()>& render) {
        static const FormatFile file(MakeFileLocation(TestDataPath("translator.xlat")));
        const FormatOverrideScope scope(file.Overrides(), GlobalFormatOverrideContext());
        return render();
    }
    // The English rendering behind the tag.
    static void ExpectTagged(const char* tag, const std::function<std::string()>& render) {
        EXPECT_EQ(Translated(render), std::string("[") + tag + "] " + render());
    }

    ScopedTZ zone_{"UTC0"};
    ScopedClockOverride clock_{kNow};
};

#define CATALOGUE_WITHOUT_ARGUMENTS(X)                                                                         \
    X(QuietModeTitle) X(Cancel) X(OK) X(EnteringQuietModeTitle) X(PreviewDialogTitle) X(LastChangeCap)         \
    X(IssueTimeCap) X(CategoryCap) X(IssuerCap) X(LineCap) X(TypeCap) X(ScriptBoxCap) X(RetryCap)              \
    X(AcceptOffersButton) X(HideOffersButton) X(ToggleHiddenOffersCheck) X(SearchCaption) X(ProgressCaption)   \
    X(ViewPostponed) X(AboutTitle) X(MainDialogTitle) X(Progress) X(TechnicianTab) X(SupportDashboard)         \
    X(Offers) X(AboutMenu) X(TryCap) X(IDCap) X(NameCap) X(ActionHistoryTitle) X(Loading) X(MenuViewPostponed) \
    X(MenuPaste) X(MenuCopy) X(MenuCut) X(MenuEdit) X(MenuOpen) X(MenuViewActionDialog) X(MenuHelpAbout)       \
    X(MenuHelpContents) X(MenuHelp) X(MenuExit) X(MenuFile) X(ShutdownNowDescription)                          \
    X(RestartNowDescription) X(ShutdownNow) X(RestartNow) X(PreviewAction) X(ConfirmationCaption)              \
    X(PreActionTitle) X(SnoozeCaption) X(TakeAllActions) X(ActionRequestTitle) X(Dismiss) X(AboutVersion)      \
    X(AboutNotice)

TEST_F(TranslatorTest, Catalogue) {
    using namespace LocalizedStrings;
#define EXPECT_TAGGED(name) ExpectTagged(#name, [] { return Text(name()); });
    CATALOGUE_WITHOUT_ARGUMENTS(EXPECT_TAGGED)
#undef EXPECT_TAGGED
    const Instant start(1795822200LL * kSecond), end(1795828500LL * kSecond);  // 23:30, 01:15
    ExpectTagged("EnteringQuietModeExplanation", [&] { return Text(EnteringQuietModeExplanation(start, end)); });
    for (std::uint32_t count : {0u, 1u, 2u}) {
        SCOPED_TRACE(count);
        ExpectTagged("AnnounceOffers", [&] { return Text(AnnounceOffers(count)); });
        ExpectTagged("TrayTip", [&] { return Text(TrayTip(count)); });
    }
    EXPECT_EQ(Translated([&] { return Text(QuietModeExplanation(start, end)); }),
              "[QuietModeExplanation] until 01:15:00, from 23:30:00: disabled.");
}

TEST_F(TranslatorTest, SummaryGrids) {
    enum Kind { None, Within, Now, Automatic };
    for (int wording = 0; wording < 3; ++wording) {  // one action, selected, pending
        for (int cell = 0; cell < 24; ++cell) {
            const bool save = cell % 2 == 1;
            const int consequence = cell / 2 % 3;
            const Kind kind = Kind(cell / 6);
            SCOPED_TRACE(::testing::Message() << "wording " << wording << " cell " << cell);
            ActionRequest action;
            action.id = 7;
            action.requestSave = save;
            action.restart = consequence == 1;
            action.shutdown = consequence == 2;
            action.forceRun = kind == Automatic;
            if (kind != None) {
                action.deadline = TimeObject(kNow + TimeInterval(kind == Now ? kMinute : 120 * kMinute), TimeZone());
            }
            ActionRequestStore store;
            store.UpdateActions({action});
            const auto render = [&] {
                return (wording == 0 ? ActionSummary(action) : ActionSummary({7}, store, wording == 2)).Str();
            };
            const std::string english = render();
            if (cell == 0) {
                EXPECT_EQ(english + Translated(render), "");
                continue;
            }
            // The cell chosen says what the action needs, in the right wording.
            const char* const kParts[] = {"save your work", "restart", "shutdown", "within 2 hours.", " now.",
                                          "automatically in 2 hours.", "his action", "selected"};
            const bool expected[] = {save, consequence == 1, consequence == 2, kind == Within, kind == Now,
                                     kind == Automatic, wording == 0, wording == 1};
            for (int i = 0; i < 8; ++i) {
                EXPECT_EQ(english.find(kParts[i]) != std::string::npos, expected[i]) << kParts[i] << ": " << english;
            }
            // The whole sentence is translated, and so is its deadline text.
            std::string translated = "[T] " + english;
            if (const std::size_t at = translated.find("2 hours."); at != std::string::npos) {
                translated.insert(at, "[T] ");
            }
            EXPECT_EQ(Translated(render), translated);
        }
    }
}

TEST_F(TranslatorTest, DeadlineTextsDayNamesAndLocalTime) {
    const std::pair<std::int64_t, bool> kDeadlines[] = {
        {-1, true}, {-1, false}, {0, false}, {0, true}, {kSecond, true}, {kMinute + kSecond, true},
        {kMinute + 2 * kSecond, true}, {2 * kMinute + kSecond, true}, {60 * kMinute, false},
        {61 * kMinute, false}, {kDay, false}, {kDay + 1, false}, {3 * kDay, false},
    };
    for (const auto& [remaining, forceRun] : kDeadlines) {
        SCOPED_TRACE(remaining);
        ExpectTagged("T", [&] { return FormattedDeadline(TimeInterval(remaining), forceRun, false).Str(); });
    }
    EXPECT_EQ(Translated([] { return FormattedDeadline(TimeInterval(-1), true, true).Str(); }), "[T] Running...");
    EXPECT_EQ(Translated([] { return FormattedDeadline(TimeInterval(2 * kDay), false, true).Str(); }),
              "[T] in [T] 2 days");
    EXPECT_EQ(Translated([] { return FormattedDeadline(TimeInterval(3 * kMinute + 4 * kSecond), true, false).Str(); }),
              "[T] 4 seconds after 3 minutes");
    const char* const kNames[] = {"[T] Sunday [T] Sun", "[T] Monday [T] Mon", "[T] Tuesday [T] Tue",
                                  "[T] Wednesday [T] Wed", "[T] Thursday [T] Thu", "[T] Friday [T] Fri",
                                  "[T] Saturday [T] Sat", "[T] ??? [T] ???"};
    for (int day = 0; day < 8; ++day) {
        EXPECT_EQ(Translated([day] {
                      return UnixPlatform::FormattedLongDayOfWeek(DayOfWeek(day)).Str() + " " +
                             UnixPlatform::FormattedShortDayOfWeek(DayOfWeek(day)).Str();
                  }),
                  kNames[day]);
    }
    EXPECT_EQ(Translated([] { return UnixPlatform::FormattedLocalTime(kNow).Str(); }),
              "[T] 12:00:00 on Sun, 22 Nov 2026");
}

}  // namespace
