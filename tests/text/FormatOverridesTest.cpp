#include "text/FormatOverrides.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

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

}  // namespace
