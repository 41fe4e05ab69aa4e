#include "text/UFormat.h"

#include <gtest/gtest.h>

#include <clocale>
#include <string>
#include <typeinfo>
#include <vector>

#include "base/unicode/UTF8.h"

namespace {

template <class E>
std::string Error() {
    return std::string("error ") + typeid(E).name();
}
const std::string kImproper = Error<ImproperFormatVariableName>(), kUndefined = Error<UndefinedFormatVariable>();
const std::string kTooMany = Error<TooManyFormatArguments>(), kTooFew = Error<TooFewFormatArguments>();

// What a call returned, or the error it threw.
template <class Call>
std::string Result(Call call) {
    try {
        return call();
    } catch (const DebuggableException& e) {
        return std::string("error ") + typeid(e).name();
    }
}

TEST(FormatBindings, CountsThatDisagreeNeverOverrunTheSlots) {
    const UStringRef<UTF8> args[] = {"A", "B"};
    FormatBinding slots[2];
    EXPECT_THROW(MakeFormatParameterBindings("{a}{b}", args, 2, slots, 1), TooManyFormatArguments);
    EXPECT_THROW(MakeFormatParameterBindings("{a}", args, 1, slots, 2), TooFewFormatArguments);
}

// Renders `key` with `a` under a context holding the translation file `xlat`.
std::string Render(const std::string& xlat, const std::string& key, const std::vector<const char*>& a) {
    const FormatOverrideSet set(xlat);
    FormatOverrideContext context;
    const FormatOverrideScope scope(set, context);
    const FormatPair pair = UFormat(key, key, context);
    return Result([&] {
        switch (a.size()) {
            case 0: return MakeUString(FormatPlusArguments(pair)).Str();
            case 1: return MakeUString(FormatPlusArguments(pair, a[0])).Str();
            case 2: return MakeUString(FormatPlusArguments(pair, a[0], a[1])).Str();
            default: return MakeUString(FormatPlusArguments(pair, a[0], a[1], a[2])).Str();
        }
    });
}

TEST(UFormat, RendersKeyOrTranslation) {
    const std::string kPending = "There are {x} pending actions.";
    struct Case { const char* name; std::string xlat, key; std::vector<const char*> args; std::string result; };
    const Case kCases[] = {
        {"built-ins", "", "{_obrace}x{_cbrace}{_crlf}{_cr}{_lf}{_tab}", {}, "{x}\r\n\r\n\t"},
        {"built-in names are exact", "", "{_Tab}", {}, kUndefined},
        {"a name's first character is free", "", "{9lives}{-a_B9}{\xC3\xA9" "a}", {"1", "2", "3"}, "123"},
        {"but not the rest", "", "{a\xC3\xA9}", {"A"}, kImproper},
        {"empty name", "", "{}", {}, kImproper},
        {"English default", "", kPending, {"3"}, "There are 3 pending actions."},
        {"translation keeps the name", kPending + "\t{x}: pending", kPending, {"3"}, "3: pending"},
        {"translation renames", kPending + "\t{y} pending", kPending, {"3"}, kUndefined},
        {"translation drops the name", kPending + "\tpending", kPending, {"3"}, "pending"},
        {"translation repeats", kPending + "\t{x}={x}", kPending, {"3"}, "3=3"},
        {"translation reorders", "{a}-{b}\t{b}+{a}", "{a}-{b}", {"A", "B"}, "B+A"},
        {"translation names go unchecked", "{a}\t{a b}", "{a}", {"A"}, kUndefined},
        {"translation with {}", "{a}\t{}", "{a}", {"A"}, kImproper},
        {"translation unclosed", "{a}\t{a", "{a}", {"A"}, Error<BadFormatStringError>()},
        {"key still checked", "{a b}\tfine", "{a b}", {"A"}, kImproper},
        // Each occurrence takes an argument; a repeated name reads its lowest value.
        {"repeat in the key", "", "{b}{a}{b}", {"2", "1", "0"}, "010"},
        {"placeholder given none", "", "{x}", {}, kTooMany},
        {"argument without placeholder", "", "plain", {"A"}, kTooFew},
        {"values go in verbatim", "", "{a}{b}", {"{b}", "{_tab}"}, "{b}{_tab}"},
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(Render(c.xlat, c.key, c.args), c.result);
    }
}

// The C locale's refusal is pinned with the catalogue, which is where it matters.
TEST(UFormat, PlatformFormUnderUTF8) {
    const std::string saved = std::setlocale(LC_CTYPE, nullptr);
    if (std::setlocale(LC_CTYPE, "C.UTF-8") == nullptr) {
        GTEST_SKIP() << "locale C.UTF-8 is not installed";
    }
    const FormatPair accented{"{a}", "caf\xC3\xA9 {a}"}, malformed{"{a}", "\xC3 {a}"};
    EXPECT_STREQ(MakePlatformString(FormatPlusArguments(accented, "x")).Get(), "caf\xC3\xA9 x");
    // Translation bytes are checked only here.
    EXPECT_THROW(MakePlatformString(FormatPlusArguments(malformed, "x")), InvalidTextEncoding);
    std::setlocale(LC_CTYPE, saved.c_str());
}

}  // namespace
