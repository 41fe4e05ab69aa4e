#include "text/UFormat.h"

#include <gtest/gtest.h>

#include <clocale>
#include <string>
#include <vector>

#include "base/unicode/UTF8.h"

namespace {

enum class Outcome { Ok, Improper, Undefined, TooMany, TooFew, BadFormat };

template <class Call>
Outcome OutcomeOf(Call call) {
    try {
        call();
        return Outcome::Ok;
    } catch (const ImproperFormatVariableName&) {
        return Outcome::Improper;
    } catch (const UndefinedFormatVariable&) {
        return Outcome::Undefined;
    } catch (const TooManyFormatArguments&) {
        return Outcome::TooMany;
    } catch (const TooFewFormatArguments&) {
        return Outcome::TooFew;
    } catch (const BadFormatStringError&) {
        return Outcome::BadFormat;
    }
}

TEST(FormatBindings, NameCheck) {
    struct Case { const char* name; Outcome outcome; };
    const Case kCases[] = {
        {"a_B9", Outcome::Ok},     {"9lives", Outcome::Ok},   {"-a", Outcome::Ok},
        {"\xC3\xA9" "a", Outcome::Ok},  // the first character, multibyte or not, is free
        {"x-", Outcome::Improper}, {"x y", Outcome::Improper}, {"a\xC3\xA9", Outcome::Improper},
        {"", Outcome::Improper},   {"_crlf", Outcome::Ok},     {"_nl", Outcome::Undefined},
        {"_Tab", Outcome::Undefined},
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(OutcomeOf([&] { CheckFormatVariableName(c.name); }), c.outcome);
    }
}

TEST(FormatBindings, BindsByOccurrenceSortedAndLooksUpTheFirst) {
    const UStringRef<UTF8> args[] = {"second", "first", "z"};
    FormatBinding slots[3];
    MakeFormatParameterBindings("{x}{_tab} and {x} {a}", args, 3, slots, 3);
    EXPECT_EQ(slots[0].name, UStringRef<UTF8>("a"));
    EXPECT_EQ(slots[1].value, UStringRef<UTF8>("first"));
    EXPECT_EQ(slots[2].value, UStringRef<UTF8>("second"));
    EXPECT_EQ(FormatExpressionValue("x", slots, 3), UStringRef<UTF8>("first"));
    EXPECT_THROW(FormatExpressionValue("_a", slots, 3), UndefinedFormatVariable);
    // More arguments than slots must not write past the slots.
    EXPECT_THROW(MakeFormatParameterBindings("{a}{b}", args, 2, slots, 1), TooManyFormatArguments);
    EXPECT_THROW(MakeFormatParameterBindings("{a}", args, 1, slots, 2), TooFewFormatArguments);
}

// Renders `key` with `args` under a context holding the translation file `xlat`.
Outcome Render(const std::string& xlat, const char* key, std::vector<const char*> args, std::string& out) {
    const FormatOverrideSet set(xlat);
    FormatOverrideContext context;
    const FormatOverrideScope scope(set, context);
    const FormatPair pair = UFormat(key, key, context);
    return OutcomeOf([&] {
        if (args.empty()) {
            out = MakeUString(FormatPlusArguments(pair)).Str();
        } else if (args.size() == 1) {
            out = MakeUString(FormatPlusArguments(pair, args[0])).Str();
        } else {
            out = MakeUString(FormatPlusArguments(pair, args[0], args[1])).Str();
        }
    });
}

TEST(UFormat, RendersKeyOrTranslation) {
    const std::string kPending = "There are {x} pending actions.";
    struct Case { const char* name; std::string xlat; std::string key; std::vector<const char*> args; Outcome outcome; const char* text; };
    const Case kCases[] = {
        {"built-in braces", "", "{_obrace}x{_cbrace}", {}, Outcome::Ok, "{x}"},
        {"control built-ins", "", "{_crlf}{_cr}{_lf}{_tab}", {}, Outcome::Ok, "\r\n\r\n\t"},
        {"unknown built-in", "", "{_nl}", {}, Outcome::Undefined, ""},
        {"English default", "", kPending, {"3"}, Outcome::Ok, "There are 3 pending actions."},
        {"translation keeps the name", kPending + "\t{x}: pending", kPending, {"3"}, Outcome::Ok, "3: pending"},
        {"translation renames", kPending + "\t{y} pending", kPending, {"3"}, Outcome::Undefined, ""},
        {"translation drops the name", kPending + "\tpending", kPending, {"3"}, Outcome::Ok, "pending"},
        {"translation repeats", kPending + "\t{x}={x}", kPending, {"3"}, Outcome::Ok, "3=3"},
        {"translation reorders", "{a}-{b}\t{b}+{a}", "{a}-{b}", {"A", "B"}, Outcome::Ok, "B+A"},
        {"translation names go unchecked", "{a}\t{a b}", "{a}", {"A"}, Outcome::Undefined, ""},
        {"translation with {}", "{a}\t{}", "{a}", {"A"}, Outcome::Improper, ""},
        {"translation unclosed", "{a}\t{a", "{a}", {"A"}, Outcome::BadFormat, ""},
        {"key still checked", "{a b}\tfine", "{a b}", {"A"}, Outcome::Improper, ""},
        {"repeat takes two arguments", "", "{x}/{x}", {"B", "A"}, Outcome::Ok, "A/A"},
        {"repeat given one", "", "{x}/{x}", {"A"}, Outcome::TooMany, ""},
        {"placeholder given none", "", "{x}", {}, Outcome::TooMany, ""},
        {"argument without placeholder", "", "plain", {"A"}, Outcome::TooFew, ""},
        {"values go in verbatim", "", "{a}{b}", {"{b}", "{_tab}"}, Outcome::Ok, "{b}{_tab}"},
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.name);
        std::string text;
        EXPECT_EQ(Render(c.xlat, c.key.c_str(), c.args, text), c.outcome);
        EXPECT_EQ(text, c.text);
    }
}

TEST(UFormat, PlatformFormFollowsTheLocale) {
    const std::string saved = std::setlocale(LC_CTYPE, nullptr);
    const FormatPair accented{"{a}", "caf\xC3\xA9 {a}"};
    ASSERT_NE(std::setlocale(LC_CTYPE, "C"), nullptr);
    const AutoNullTerminated<char> ascii = MakePlatformString(FormatPlusArguments(FormatPair{"{a}", "<{a}>"}, "x"));
    EXPECT_STREQ(ascii.Get(), "<x>");
    EXPECT_THROW(MakePlatformString(FormatPlusArguments(accented, "x")), UnixPlatform::WideToMultiByteConvertError);
    const bool haveUTF8 = std::setlocale(LC_CTYPE, "C.UTF-8") != nullptr;
    if (haveUTF8) {
        EXPECT_EQ(MakeLocalString(FormatPlusArguments(accented, "x")).View(), "caf\xC3\xA9 x");
        const FormatPair malformed{"{a}", "\xC3 {a}"};  // translation bytes are checked only here
        EXPECT_THROW(MakePlatformString(FormatPlusArguments(malformed, "x")), InvalidTextEncoding);
    }
    std::setlocale(LC_CTYPE, saved.c_str());
    if (!haveUTF8) {
        GTEST_SKIP() << "locale C.UTF-8 is not installed; only the C locale was checked";
    }
}

}  // namespace
