#include <clocale>
#include <cstring>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "app/Settings.h"
#include "base/unicode/Local8Bit.h"
#include "text/FormatFile.h"
#include "ui/ControlLiteral.h"
#include "ui/ErrorTexts.h"
#include "ui/LocaleCheck.h"

namespace {

constexpr char kTranslations[] = "Take Action\tAktion ausf\xC3\xBChren\nCancel\tAbbrechen\n";

// Loads a translation as ApplyInitializationInfo would, and drops every
// translation again when the test ends.
class WithTranslations : public ::testing::Test {
protected:
    void SetUp() override {
        saved_ = international;
        auto file = std::make_shared<FormatFile>(std::string(kTranslations));
        m_formatOverrides.push_back(std::make_shared<FormatOverrideScope>(file->Overrides(), GlobalFormatOverrideContext()));
        m_formatFiles.push_back(std::move(file));
    }
    void TearDown() override {
        m_formatOverrides.clear();
        m_formatFiles.clear();
        international = saved_;
        std::setlocale(LC_CTYPE, "C");
    }

    bool saved_ = false;
};

TEST(LocaleCheck, OnlyTheUntranslatedNames) {
    struct Case {
        const char* name;
        bool untranslated;
    };
    const Case cases[] = {
        {"de_DE.UTF-8", false}, {"de_DE", false}, {"fr", false}, {"C.UTF-8", false}, {"c", false},
        {"C", true},            {"POSIX", true},  {"", true},    {nullptr, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name != nullptr ? c.name : "(null)");
        EXPECT_EQ(IsUntranslatedLocale(c.name), c.untranslated);
    }
}

TEST_F(WithTranslations, AnUntranslatedLocaleDropsTheTranslations) {
    struct Case {
        const char* locale;
        bool international;
        bool keeps;  // international and the translation afterwards
    };
    const Case cases[] = {
        {"C", true, false},      {"POSIX", true, false}, {"", true, false},      {nullptr, true, false},
        {"C.UTF-8", true, true}, {"de_DE.UTF-8", true, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.locale != nullptr ? c.locale : "(null)");
        TearDown();
        SetUp();
        international = c.international;
        DropTranslationsUnderUntranslatedLocale(c.locale);
        EXPECT_EQ(international, c.keeps);
        EXPECT_EQ(std::string(ControlLiteral("Cancel").get()), c.keeps ? "Abbrechen" : "Cancel");
    }
}

TEST_F(WithTranslations, TranslationsStayWhileNotInternational) {
    international = false;
    DropTranslationsUnderUntranslatedLocale("C");
    EXPECT_FALSE(m_formatFiles.empty());
    EXPECT_STREQ(ControlLiteral("Cancel").get(), "Abbrechen");
}

TEST_F(WithTranslations, ControlLiteralTranslatesAndConvertsToTheLocale) {
    ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
    EXPECT_STREQ(ControlLiteral("Take Action").get(), "Aktion ausf\xC3\xBChren");
    EXPECT_STREQ(ControlLiteral("Not translated").get(), "Not translated");
    EXPECT_STREQ(ControlLiteral(static_cast<const char*>(nullptr)).get(), "");
    // The wrapping forms take the text as it is.
    EXPECT_STREQ(FunkyControlLiteral("Take Action").get(), "Take Action");
    EXPECT_STREQ(FunkyControlLiteral(nullptr).get(), "");
    EXPECT_STREQ(ControlLiteral(AutoNullTerminated<char>("Cancel")).get(), "Cancel");

    // A character the locale cannot show is an error, not a changed text.
    ASSERT_NE(std::setlocale(LC_CTYPE, "C"), nullptr);
    EXPECT_THROW(ControlLiteral("Take Action"), UnixPlatform::WideToMultiByteConvertError);
}

TEST(ErrorTexts, PrefixesFallbacksAndLimits) {
    const std::string longText(5000, 'x');
    struct Case {
        const char* what;
        std::string text;
        std::string expected;
    };
    const Case cases[] = {
        {"server text", XErrorText("BadWindow (invalid Window parameter)"), "XError: BadWindow (invalid Window parameter)"},
        {"no server text", XErrorText(""), "XError: Unknown XError"},
        {"null server text", XErrorText(nullptr), "XError: Unknown XError"},
        {"long server text", XErrorText(longText.c_str()), "XError: " + std::string(2047 - 8, 'x')},
        {"toolkit message", XtErrorText("Can't open display"), "XtError: Can't open display"},
        {"long toolkit message", XtErrorText(longText.c_str()), "XtError: " + std::string(2047 - 9, 'x')},
        {"null toolkit message", XtErrorText(nullptr), "XtError: "},
        {"warning with a message", FatalWarningText("noFont", "Unable to load any usable fontset"),
         "noFont (Unable to load any usable fontset)"},
        {"warning without one", FatalWarningText("noFont", ""), "noFont"},
        {"null message", FatalWarningText("noFont", nullptr), "noFont"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(c.text, c.expected);
    }
}

TEST(ErrorTexts, OnlyNoFontIsFatal) {
    EXPECT_TRUE(IsFatalWarning("noFont"));
    for (const char* other : {"nofont", "noFonts", "noFont ", "conversionError", "", static_cast<const char*>(nullptr)}) {
        SCOPED_TRACE(other != nullptr ? other : "(null)");
        EXPECT_FALSE(IsFatalWarning(other));
    }
}

}  // namespace
