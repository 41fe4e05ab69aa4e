#include "text/LocalizedStrings.h"

#include <gtest/gtest.h>

#include <clocale>
#include <string>

#include "base/time/Clock.h"
#include "base/unicode/Local8Bit.h"
#include "tests/base/time/ScopedTZ.h"
#include "text/FormatBindings.h"
#include "text/FormatOverrides.h"
#include "text/UFormatIterator.h"

namespace {

using namespace LocalizedStrings;

const Instant kNoon(1795348800LL * 1000000);  // Sunday 2026-11-22 12:00:00 UTC

class LocalizedStringsTest : public ::testing::Test {
protected:
    ScopedTZ zone_{"XST-2:30"};
    ScopedClockOverride clock_{kNoon};
};

std::string Text(const AutoNullTerminated<char>& text) { return std::string(text.View()); }
std::string Text(const AutoUString<UTF8>& text) { return text.Str(); }

TEST_F(LocalizedStringsTest, TextsWithArguments) {
    const Instant start(1795381200LL * 1000000);  // 21:00 UTC, 23:30 here
    const Instant end = start + TimeInterval(6300LL * 1000000);  // 01:15 here, the next day
    struct Case { std::string text; const char* english; };
    const Case kCases[] = {
        {Text(QuietModeExplanation(start, end)),
         "Your administrator has disabled this feature between 23:30:00 and 01:15:00."},
        {Text(EnteringQuietModeExplanation(start, end)),
         "Your administrator has disabled the Vorkan Tendwell between 23:30:00 and 01:15:00.  The application "
         "will now close."},
        {Text(AnnounceOffers(0)), "You Have 0 New Offers"},
        {Text(AnnounceOffers(1)), "You Have 1 New Offer"},
        {Text(AnnounceOffers(1234567)), "You Have 1234567 New Offers"},
        {Text(TrayTip(0)), "Click to open Vorkan Tendwell"},
        {Text(TrayTip(1)), "You have 1 pending action."},
        {Text(TrayTip(4294967295u)), "You have 4294967295 pending actions."},
    };
    for (const Case& c : kCases) {
        EXPECT_EQ(c.text, c.english);
    }
    EXPECT_EQ(Text(AboutVersion()), std::string("Vorkan Tendwell version ") + kVersion);
    EXPECT_NE(Text(AboutNotice()).find(std::string(kBuildYear) + " ZAM"), std::string::npos);
}

// A broken translation fails exactly the call that wanted the text.
TEST_F(LocalizedStringsTest, BrokenTranslationsThrowFromTheirCallOnly) {
    const std::string bytes =
        "Cancel\t{oops}\n"
        "You have {number} pending actions.\t{count} actions\n"
        "You Have {number} New Offers\t{number\n";
    const FormatOverrideSet broken(bytes);
    const FormatOverrideScope scope(broken, GlobalFormatOverrideContext());
    EXPECT_THROW(Cancel(), UndefinedFormatVariable);
    EXPECT_STREQ(OK().Get(), "OK");
    EXPECT_THROW(TrayTip(2), UndefinedFormatVariable);
    EXPECT_STREQ(TrayTip(1).Get(), "You have 1 pending action.");
    EXPECT_THROW(AnnounceOffers(5), BadFormatStringError);
}

// Platform strings are transcoded into the locale's encoding; nothing is substituted.
TEST_F(LocalizedStringsTest, PlatformStringsFollowTheLocale) {
    const std::string bytes = "Cancel\tAnnuler l\xE2\x80\x99" "action\nOffers\t\xE2\x80\x99\n";
    const FormatOverrideSet french(bytes);
    const FormatOverrideScope scope(french, GlobalFormatOverrideContext());
    const std::string saved = std::setlocale(LC_ALL, nullptr);
    ASSERT_NE(std::setlocale(LC_ALL, "C"), nullptr);
    EXPECT_THROW(Cancel(), UnixPlatform::WideToMultiByteConvertError);
    EXPECT_EQ(Offers().Str(), "\xE2\x80\x99");  // the UTF-8 form is not transcoded
    const bool haveUTF8 = std::setlocale(LC_ALL, "C.UTF-8") != nullptr;
    if (haveUTF8) {
        EXPECT_STREQ(Cancel().Get(), "Annuler l\xE2\x80\x99" "action");
    }
    std::setlocale(LC_ALL, saved.c_str());
    if (!haveUTF8) {
        GTEST_SKIP() << "locale C.UTF-8 is not installed; only the C locale was checked";
    }
}

}  // namespace
