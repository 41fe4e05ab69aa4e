// Every text of the catalogue, the summary grids, the deadline texts and the
// day names, rendered under tests/data/translator.xlat, which was written from
// the English texts independently of the code. Each translation is the English
// text behind a tag, "[FunctionName] " for the catalogue and "[T] " for the
// rest (a few reorder their placeholders), so a text in the code that differs
// by one character stays English, and a function showing another function's
// text shows the wrong tag.
#include <gtest/gtest.h>

#include <clocale>
#include <cstdint>
#include <functional>
#include <string>
#include <tuple>

#include "base/files/FileLocation.h"
#include "base/time/Clock.h"
#include "tests/base/time/ScopedTZ.h"
#include "tests/support/TestData.h"
#include "text/ActionSummary.h"
#include "text/FormatFile.h"
#include "text/FormattedDeadline.h"
#include "text/FormattedValues.h"
#include "text/LocalizedStrings.h"
#include "text/UFormat.h"

namespace {

const Instant kNow(1795348800LL * 1000000);  // Sunday 2026-11-22 12:00:00 UTC, 14:30 here
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

    ScopedTZ zone_{"XST-2:30"};  // not UTC, so that local times are seen to be local
    ScopedClockOverride clock_{kNow};
};

TEST_F(TranslatorTest, Catalogue) {
    using namespace LocalizedStrings;
#define X(name) ExpectTagged(#name, [] { return Text(name()); });
    X(QuietModeTitle) X(Cancel) X(OK) X(EnteringQuietModeTitle) X(PreviewDialogTitle) X(LastChangeCap)
    X(IssueTimeCap) X(CategoryCap) X(IssuerCap) X(LineCap) X(TypeCap) X(ScriptBoxCap) X(RetryCap)
    X(AcceptOffersButton) X(HideOffersButton) X(ToggleHiddenOffersCheck) X(SearchCaption) X(ProgressCaption)
    X(ViewPostponed) X(AboutTitle) X(MainDialogTitle) X(Progress) X(TechnicianTab) X(SupportDashboard) X(Offers)
    X(AboutMenu) X(TryCap) X(IDCap) X(NameCap) X(ActionHistoryTitle) X(Loading) X(MenuViewPostponed) X(MenuPaste)
    X(MenuCopy) X(MenuCut) X(MenuEdit) X(MenuOpen) X(MenuViewActionDialog) X(MenuHelpAbout) X(MenuHelpContents)
    X(MenuHelp) X(MenuExit) X(MenuFile) X(ShutdownNowDescription) X(RestartNowDescription) X(ShutdownNow)
    X(RestartNow) X(PreviewAction) X(ConfirmationCaption) X(PreActionTitle) X(SnoozeCaption) X(TakeAllActions)
    X(ActionRequestTitle) X(Dismiss) X(AboutVersion) X(AboutNotice)
#undef X
}

// Texts whose values the tags alone would not pin, and translations that reorder.
TEST_F(TranslatorTest, TextsWithValues) {
    using namespace LocalizedStrings;
    using namespace UnixPlatform;
    const Instant start(1795381200LL * kSecond), end = start + TimeInterval(6300 * kSecond);  // 23:30, 01:15 here
    struct Case { std::function<std::string()> render; const char* text; };
    const Case kCases[] = {
        {[&] { return Text(QuietModeExplanation(start, end)); },
         "[QuietModeExplanation] until 01:15:00, from 23:30:00: disabled."},
        {[&] { return Text(EnteringQuietModeExplanation(start, end)); },
         "[EnteringQuietModeExplanation] Your administrator has disabled the Vorkan Tendwell between 23:30:00 and "
         "01:15:00.  The application will now close."},
        {[] { return Text(AnnounceOffers(0)); }, "[AnnounceOffers] You Have 0 New Offers"},
        {[] { return Text(AnnounceOffers(1)); }, "[AnnounceOffers] You Have 1 New Offer"},
        {[] { return Text(TrayTip(0)); }, "[TrayTip] Click to open Vorkan Tendwell"},
        {[] { return Text(TrayTip(1)); }, "[TrayTip] You have 1 pending action."},
        {[] { return Text(TrayTip(4294967295u)); }, "[TrayTip] You have 4294967295 pending actions."},
        {[] { return FormattedDeadline(TimeInterval(-1), true, true).Str(); }, "[T] Running..."},
        {[] { return FormattedDeadline(TimeInterval(2 * kDay), false, true).Str(); }, "[T] in [T] 2 days"},
        {[] { return FormattedDeadline(TimeInterval(3 * kMinute + 4 * kSecond), true, false).Str(); },
         "[T] 4 seconds after 3 minutes"},
        {[] { return FormattedLocalTime(kNow).Str(); }, "[T] 14:30:00 on Sun, 22 Nov 2026"},
    };
    for (const Case& c : kCases) {
        EXPECT_EQ(Translated(c.render), c.text);
    }
    const char* const kNames[] = {"[T] Sunday [T] Sun", "[T] Monday [T] Mon", "[T] Tuesday [T] Tue",
                                  "[T] Wednesday [T] Wed", "[T] Thursday [T] Thu", "[T] Friday [T] Fri",
                                  "[T] Saturday [T] Sat", "[T] ??? [T] ???"};
    for (int day = 0; day < 8; ++day) {
        const auto names = [day] {
            return FormattedLongDayOfWeek(DayOfWeek(day)).Str() + " " + FormattedShortDayOfWeek(DayOfWeek(day)).Str();
        };
        EXPECT_EQ(Translated(names), kNames[day]);
    }
}

// A broken or unshowable translation fails exactly the call that wanted the text.
TEST_F(TranslatorTest, BadTranslationsThrowFromTheirCallOnly) {
    using namespace LocalizedStrings;
    const std::string bytes =
        "Cancel\t{oops}\n"
        "You have {number} pending actions.\t{count} actions\n"
        "You Have {number} New Offers\t{number\n"
        "Dismiss\tl\xE2\x80\x99" "action\n";
    const FormatOverrideSet broken(bytes);
    const FormatOverrideScope scope(broken, GlobalFormatOverrideContext());
    EXPECT_THROW(Cancel(), UndefinedFormatVariable);
    EXPECT_STREQ(OK().Get(), "OK");
    EXPECT_THROW(TrayTip(2), UndefinedFormatVariable);
    EXPECT_STREQ(TrayTip(1).Get(), "You have 1 pending action.");
    EXPECT_THROW(AnnounceOffers(5), BadFormatStringError);
    ASSERT_STREQ(std::setlocale(LC_CTYPE, nullptr), "C");  // as every program starts
    EXPECT_THROW(Dismiss(), UnixPlatform::WideToMultiByteConvertError);
}

TEST_F(TranslatorTest, SummaryGrids) {
    for (int wording = 0; wording < 3; ++wording) {  // one action, selected, pending
        for (int cell = 0; cell < 24; ++cell) {
            // Save off/on; no consequence, restart, shutdown; no deadline, 2 hours, 1 minute, 2 hours forced.
            const int consequence = cell / 2 % 3, kind = cell / 6;
            SCOPED_TRACE(::testing::Message() << "wording " << wording << " cell " << cell);
            ActionRequest action;
            action.id = 7;
            std::tie(action.requestSave, action.restart, action.shutdown, action.forceRun) =
                std::make_tuple(cell % 2 == 1, consequence == 1, consequence == 2, kind == 3);
            if (kind != 0) {
                action.deadline = TimeObject(kNow + TimeInterval(kind == 2 ? kMinute : 120 * kMinute), TimeZone());
            }
            ActionRequestStore store;
            store.UpdateActions({action});
            const auto render = [&] {
                return (wording == 0 ? ActionSummary(action) : ActionSummary({7}, store, wording == 2)).Str();
            };
            const std::string english = render();
            // The cell chosen says what the action needs, in the right wording.
            const std::pair<const char*, bool> kParts[] = {
                {"save your work", action.requestSave}, {"restart", consequence == 1}, {"shutdown", consequence == 2},
                {"within 2 hours.", kind == 1}, {" now.", kind == 2}, {"automatically in 2 hours.", kind == 3},
                {"his action", wording == 0 && cell != 0}, {"selected", wording == 1 && cell != 0}};
            for (const auto& [part, present] : kParts) {
                EXPECT_EQ(english.find(part) != std::string::npos, present) << part << ": " << english;
            }
            // The whole sentence is translated, and so is its deadline text; nothing is said for cell 0.
            std::string translated = cell == 0 ? "" : "[T] " + english;
            if (const std::size_t at = translated.find("2 hours."); at != std::string::npos) {
                translated.insert(at, "[T] ");
            }
            EXPECT_EQ(Translated(render), translated);
        }
    }
}

TEST_F(TranslatorTest, DeadlineTexts) {
    const std::pair<std::int64_t, bool> kDeadlines[] = {
        {-1, true}, {-1, false}, {0, false}, {0, true}, {kSecond, true}, {kMinute + kSecond, true},
        {kMinute + 2 * kSecond, true}, {2 * kMinute + kSecond, true}, {60 * kMinute, false},
        {61 * kMinute, false}, {kDay, false}, {kDay + 1, false}, {3 * kDay, false},
    };
    for (const auto& [remaining, forceRun] : kDeadlines) {
        SCOPED_TRACE(remaining);
        ExpectTagged("T", [&] { return FormattedDeadline(TimeInterval(remaining), forceRun, false).Str(); });
    }
}

}  // namespace
