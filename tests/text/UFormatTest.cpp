#include "text/UFormat.h"

#include <gtest/gtest.h>

#include <string>

namespace {

enum class Outcome { Ok, Improper, Undefined, TooMany, TooFew, BadFormat };

// Renders `key` with up to two arguments under a context holding `xlat`.
Outcome Render(const std::string& xlat, const char* key, int count, std::string& out) {
    const FormatOverrideSet set(xlat);
    FormatOverrideContext context;
    const FormatOverrideScope scope(set, context);
    const FormatPair pair = UFormat(key, key, context);
    try {
        if (count == 0) {
            out = MakeUString(FormatPlusArguments(pair)).Str();
        } else if (count == 1) {
            out = MakeUString(FormatPlusArguments(pair, "3")).Str();
        } else {
            out = MakeUString(FormatPlusArguments(pair, "A", std::string("B"))).Str();
        }
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

TEST(UFormat, RendersKeyOrTranslation) {
    const char* const kPending = "There are {x} pending actions.";
    struct Case { const char* name; std::string xlat; const char* key; int count; Outcome outcome; const char* text; };
    const Case kCases[] = {
        {"built-in braces", "", "{_obrace}x{_cbrace}", 0, Outcome::Ok, "{x}"},
        {"lone close brace", "", "a}b", 0, Outcome::Ok, "a}b"},
        {"control built-ins", "", "{_crlf}{_cr}{_lf}{_tab}", 0, Outcome::Ok, "\r\n\r\n\t"},
        {"unknown built-in", "", "{_nl}", 0, Outcome::Undefined, ""},
        {"unclosed brace", "", "a{b", 0, Outcome::BadFormat, ""},
        {"English default", "", kPending, 1, Outcome::Ok, "There are 3 pending actions."},
        {"translation keeps the name", std::string(kPending) + "\t{x}: pending", kPending, 1, Outcome::Ok, "3: pending"},
        {"translation renames", std::string(kPending) + "\t{y} pending", kPending, 1, Outcome::Undefined, ""},
        {"translation drops the name", std::string(kPending) + "\tpending", kPending, 1, Outcome::Ok, "pending"},
        {"translation repeats", std::string(kPending) + "\t{x}={x}", kPending, 1, Outcome::Ok, "3=3"},
        {"translation reorders", "{a}-{b}\t{b}+{a}", "{a}-{b}", 2, Outcome::Ok, "B+A"},
        {"translation with bad name", "{a}\t{a b}", "{a}", 1, Outcome::Undefined, ""},
        {"translation with {}", "{a}\t{}", "{a}", 1, Outcome::Improper, ""},
        {"translation unclosed", "{a}\t{a", "{a}", 1, Outcome::BadFormat, ""},
        {"translation empty", "{a}\t", "{a}", 1, Outcome::Ok, ""},
        {"key still checked", "{a b}\tfine", "{a b}", 1, Outcome::Improper, ""},
        {"key arguments checked", "x\t{_tab}", "x", 1, Outcome::TooFew, ""},
        {"repeat consumes two arguments", "", "{x}/{x}", 2, Outcome::Ok, "A/A"},
        {"repeat with one argument", "", "{x}/{x}", 1, Outcome::TooMany, ""},
        {"placeholder without argument", "", "{x}", 0, Outcome::TooMany, ""},
        {"argument without placeholder", "", "plain", 1, Outcome::TooFew, ""},
        {"odd but valid names", "", "{9lives}{-a}", 2, Outcome::Ok, "AB"},
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.name);
        std::string text;
        EXPECT_EQ(Render(c.xlat, c.key, c.count, text), c.outcome);
        EXPECT_EQ(text, c.text);
    }
}

TEST(UFormat, ArgumentValuesGoInVerbatim) {
    const FormatPair pair{"{a}{b}", "{a}{b}"};
    EXPECT_EQ(MakeUString(FormatPlusArguments(pair, "{b}", "{_tab}")).Str(), "{b}{_tab}");
}

}  // namespace
