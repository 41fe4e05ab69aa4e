#include <gtest/gtest.h>

#include <clocale>
#include <memory>
#include <string>
#include <typeinfo>
#include <vector>

#include "base/unicode/UTF8.h"
#include "tests/support/TestData.h"
#include "text/FormatOverrides.h"
#include "text/UFormat.h"

namespace {

// The parsed pairs written as "key=translation;" in sorted order.
std::string Pairs(const std::string& bytes) {
    const FormatOverrideSet set(bytes);
    std::string text;
    for (const auto& entry : set.Entries()) {
        text += entry.first.ToString() + "=" + entry.second.ToString() + ";";
    }
    return text;
}

TEST(FormatOverrideSet, ParsesLines) {
    struct Case { const char* name; std::string bytes; std::string pairs; };
    const Case kCases[] = {
        {"last line without a line end", "b\t2\na\t1", "a=1;b=2;"},
        {"CR LF and CR ends", "a\t1\r\nb\t2\rc\t3\r\n", "a=1;b=2;c=3;"},
        {"lines without a tab or key", "no tab here\n\tx\na\t1", "a=1;"},
        {"key, tab, tab, translation", "a\t\tz\nb\tnote\ty", "a=z;b=y;"},
        {"key and tab keep an empty text", "a\t", "a=;"},
        {"spaces kept", " a \t b ", " a = b ;"},
        {"byte-order mark stays in the first key", "\xEF\xBB\xBF" "a\t1\na\t2", "a=2;\xEF\xBB\xBF" "a=1;"},
        {"bytewise order, prefix first", "ab\t1\n\xC3\xA9\t3\nB\t4\na\t2", "B=4;a=2;ab=1;\xC3\xA9=3;"},
        {"NUL is an ordinary byte", std::string("a\0b\tc", 5), std::string("a\0b=c;", 6)},
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(Pairs(c.bytes), c.pairs);
    }
}

TEST(FormatOverrideSet, LookupTakesTheLowestDuplicate) {
    const std::string bytes = "k\tz\nk\ta\nkey\tlong";
    const FormatOverrideSet set(bytes);
    EXPECT_EQ(set.GetOverride("k"), UStringRef<UTF8>("a"));
    for (const char* missing : {"", "ke", "keys"}) {
        SCOPED_TRACE(missing);
        EXPECT_FALSE(set.HasOverride(missing));
        EXPECT_THROW(set.GetOverride(missing), FormatOverrideNotFound);
    }
    // Only the length is looked at before refusing, so a bogus one is safe here.
    EXPECT_THROW(FormatOverrideSet(UStringRef<UTF8>(bytes.data(), std::size_t{1} << 32)), RequiredValueWouldOverflow);
}

// Precedence across scopes is pinned where translation files are loaded.
TEST(FormatOverrideContext, MayDieBeforeItsScopes) {
    const FormatOverrideSet empty;
    auto context = std::make_unique<FormatOverrideContext>();
    const FormatOverrideScope scope(empty, *context);
    context.reset();  // as the process-wide one may at exit
    EXPECT_FALSE(scope.IsLinked());
}

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
        {"empty", "", "", {}, ""},
        {"stray closing braces are text", "", "}{x}}", {"A"}, "}A}"},
        {"a \"{\" inside a placeholder belongs to the name", "", "{{x}", {"A"}, "A"},
        {"unclosed brace", "", "ab{", {}, Error<BadFormatStringError>()},
        {"unclosed brace after a placeholder", "", "{x}{", {"A"}, Error<BadFormatStringError>()},
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
    if (!LocaleInstalled("C.UTF-8")) GTEST_SKIP() << "locale C.UTF-8 is not installed";
    const std::string saved = std::setlocale(LC_CTYPE, nullptr);
    ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
    const FormatPair accented{"{a}", "caf\xC3\xA9 {a}"}, malformed{"{a}", "\xC3 {a}"};
    EXPECT_STREQ(MakePlatformString(FormatPlusArguments(accented, "x")).Get(), "caf\xC3\xA9 x");
    // Translation bytes are checked only here.
    EXPECT_THROW(MakePlatformString(FormatPlusArguments(malformed, "x")), InvalidTextEncoding);
    std::setlocale(LC_CTYPE, saved.c_str());
}

}  // namespace
