#include <clocale>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "app/Settings.h"
#include "base/unicode/Local8Bit.h"
#include "tests/support/ProgramSettings.h"
#include "text/FormatFile.h"
#include "ui/ControlLiteral.h"
#include "ui/ErrorTexts.h"
#include "ui/LocaleCheck.h"

namespace {

// Loads a translation as ApplyInitializationInfo would.
void LoadTranslations() {
    auto file = std::make_shared<FormatFile>(std::string("Take Action\tAktion ausf\xC3\xBChren\nCancel\tAbbrechen\n"));
    m_formatOverrides.push_back(std::make_shared<FormatOverrideScope>(file->Overrides(), GlobalFormatOverrideContext()));
    m_formatFiles.push_back(std::move(file));
}

// Drops every translation and restores the settings when the test ends.
class WithTranslations : public ::testing::Test {
protected:
    void SetUp() override {
        ResetProgramSettings();
        LoadTranslations();
    }
    void TearDown() override { ResetProgramSettings(); }
};

TEST_F(WithTranslations, AnUntranslatedLocaleDropsTheTranslations) {
    struct Case {
        const char* locale;
        bool international;
        bool translated;  // international and the translation afterwards
    };
    const Case cases[] = {
        {"C", true, false},     {"POSIX", true, false}, {"", true, false}, {nullptr, true, false},
        {"C.UTF-8", true, true}, {"c", true, true},
        {"C", false, true},  // not international: nothing is dropped
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.locale != nullptr ? c.locale : "(null)");
        if (m_formatFiles.empty()) LoadTranslations();
        international = c.international;
        DropTranslationsUnderUntranslatedLocale(c.locale);
        EXPECT_EQ(international, c.international && c.translated);
        EXPECT_EQ(m_formatFiles.empty(), !c.translated);
        EXPECT_STREQ(ControlLiteral("Cancel").get(), c.translated ? "Abbrechen" : "Cancel");
    }
}

TEST_F(WithTranslations, ControlLiteralTranslatesAndConvertsToTheLocale) {
    ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
    EXPECT_STREQ(ControlLiteral("Take Action").get(), "Aktion ausf\xC3\xBChren");
    EXPECT_STREQ(ControlLiteral("Not translated").get(), "Not translated");
    EXPECT_STREQ(ControlLiteral(static_cast<const char*>(nullptr)).get(), "");
    // The wrapping form takes the text as it is.
    EXPECT_STREQ(FunkyControlLiteral("Take Action").get(), "Take Action");
    EXPECT_STREQ(FunkyControlLiteral(nullptr).get(), "");

    // A character the locale cannot show is an error, not a changed text.
    ASSERT_NE(std::setlocale(LC_CTYPE, "C"), nullptr);
    EXPECT_THROW(ControlLiteral("Take Action"), UnixPlatform::WideToMultiByteConvertError);
}

// The font report's text reaches the client; the X and toolkit error texts only
// name the ending, which nothing shows or sends, so they need only survive a
// toolkit that passes no message.
TEST(ErrorTexts, TheFontReportNamesTheWarningAndItsMessage) {
    EXPECT_EQ(XtErrorText(nullptr), "XtError: ");
    EXPECT_EQ(FatalWarningText("noFont", "Unable to load any usable fontset"),
              "noFont (Unable to load any usable fontset)");
    EXPECT_EQ(FatalWarningText("noFont", ""), "noFont");
    EXPECT_EQ(FatalWarningText("noFont", nullptr), "noFont");
}

TEST(ErrorTexts, OnlyNoFontIsFatal) {
    EXPECT_TRUE(IsFatalWarning("noFont"));
    for (const char* other : {"nofont", "noFonts", "conversionError", "", static_cast<const char*>(nullptr)}) {
        SCOPED_TRACE(other != nullptr ? other : "(null)");
        EXPECT_FALSE(IsFatalWarning(other));
    }
}

}  // namespace
