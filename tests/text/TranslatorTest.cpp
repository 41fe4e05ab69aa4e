// The texts with values, the summary grids and the deadline texts, rendered
// under tests/data/translator.xlat, which was written from the English texts
// independently of the code. Each translation is the English text behind a
// tag, "[FunctionName] " for the catalogue and "[T] " for the rest (a few
// reorder their placeholders), so a text in the code that differs by one
// character stays English. The catalogue's fixed texts are checked under the
// same file where the dialogs show them.
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

// Texts whose values the tags alone would not pin, and translations that reorder.
TEST_F(TranslatorTest, TextsWithValues) {
    using namespace LocalizedStrings;
    using namespace UnixPlatform;
    const Instant start(1795381200LL * kSecond), end = start + TimeInterval(6300 * kSecond);  // 23:30, 01:15 here
    struct Case { std::function<std::string()> render; const char* text; };
    const Case kCases[] = {
        {[&] { return Text(QuietModeExplanation(start, end)); },
         "[QuietModeExplanation] until 01:15:00, from 23:30:00: disabled."},
        {[] { return FormattedDeadline(TimeInterval(3 * kMinute + 4 * kSecond), true, false).Str(); },
         "[T] 4 seconds after 3 minutes"},
        {[] { return FormattedLocalTime(kNow).Str(); }, "[T] 14:30:00 on Sun, 22 Nov 2026"},
    };
    for (const Case& c : kCases) {
        EXPECT_EQ(Translated(c.render), c.text);
    }
}

// A broken or unshowable translation fails exactly the call that wanted the text.
TEST_F(TranslatorTest, BadTranslationsThrowFromTheirCallOnly) {
    using namespace LocalizedStrings;
    const std::string bytes =
        "Take All Actions\t{oops}\n"
        "Your administrator has disabled this feature between {start} and {end}.\t{begin}\n"
        "Action Details\t{unclosed\n"
        "Action Requests\tl\xE2\x80\x99" "action\n";
    const FormatOverrideSet broken(bytes);
    const FormatOverrideScope scope(broken, GlobalFormatOverrideContext());
    EXPECT_THROW(TakeAllActions(), UndefinedFormatVariable);
    EXPECT_STREQ(SnoozeCaption().Get(), "Click Snooze to be reminded again:");
    EXPECT_THROW(QuietModeExplanation(kNow, kNow), UndefinedFormatVariable);
    EXPECT_THROW(ActionHistoryTitle(), BadFormatStringError);
    ASSERT_STREQ(std::setlocale(LC_CTYPE, nullptr), "C");  // as every program starts
    EXPECT_THROW(ActionRequestTitle(), UnixPlatform::WideToMultiByteConvertError);
}

TEST_F(TranslatorTest, SummaryGrids) {
    for (const int wording : {0, 2}) {  // one action, pending (the program words no summary of a selection)
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
                return (wording == 0 ? ActionSummary(action) : ActionSummary({7}, store, true)).Str();
            };
            const std::string english = render();
            // The cell chosen says what the action needs, in the right wording.
            const std::pair<const char*, bool> kParts[] = {
                {"save your work", action.requestSave}, {"restart", consequence == 1}, {"shutdown", consequence == 2},
                {"within 2 hours.", kind == 1}, {" now.", kind == 2}, {"automatically in 2 hours.", kind == 3},
                {"his action", wording == 0 && cell != 0}};
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
