#include "text/FormatOverrides.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

// The parsed pairs written as "key=translation;" in sorted order.
std::string Pairs(const FormatOverrideSet& set) {
    std::string text;
    for (const auto& entry : set.Entries()) {
        text += entry.first.ToString() + "=" + entry.second.ToString() + ";";
    }
    return text;
}

TEST(FormatOverrideSet, ParsesLines) {
    struct Case { const char* name; std::string bytes; std::string pairs; };
    const Case kCases[] = {
        {"empty file", "", ""},
        {"one line, no line end", "a\tb", "a=b;"},
        {"LF ends", "b\t2\na\t1\n", "a=1;b=2;"},
        {"CR LF ends", "a\t1\r\nb\t2\r\n", "a=1;b=2;"},
        {"CR ends", "a\t1\rb\t2", "a=1;b=2;"},
        {"line without a tab", "no tab here\na\t1", "a=1;"},
        {"line starting with a tab", "\tx\na\t1", "a=1;"},
        {"key, tab, tab, translation", "a\t\tz", "a=z;"},
        {"text between tabs ignored", "a\tcomment\tz", "a=z;"},
        {"key and tab keep an empty text", "a\t", "a=;"},
        {"spaces kept", " a \t b ", " a = b ;"},
        {"byte-order mark stays in the first key", "\xEF\xBB\xBF" "a\t1\na\t2", "a=2;\xEF\xBB\xBF" "a=1;"},
        {"duplicates sorted by translation", "k\tz\nk\ta", "k=a;k=z;"},
        {"bytewise order, prefix first", "ab\t1\na\t2\n\xC3\xA9\t3\nB\t4", "B=4;a=2;ab=1;\xC3\xA9=3;"},
        {"NUL is an ordinary byte", std::string("a\0b\tc", 5), std::string("a\0b=c;", 6)},
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(Pairs(FormatOverrideSet(c.bytes)), c.pairs);
    }
}

TEST(FormatOverrideSet, PairsOfEveryPrefixStayInsideIt) {
    // The pairs must point into the given bytes, whatever buffer they sit in.
    const std::string bytes = "k1\tv1\r\nk2\t\tv2\n\tskip\nk3\t";
    for (std::size_t cut = 0; cut <= bytes.size(); ++cut) {
        SCOPED_TRACE(cut);
        const std::string head = bytes.substr(0, cut);
        const FormatOverrideSet set(head);
        for (const auto& entry : set.Entries()) {
            EXPECT_GE(entry.first.Data(), head.data());
            EXPECT_LE(entry.second.Data() + entry.second.Size(), head.data() + head.size());
        }
    }
    EXPECT_EQ(Pairs(FormatOverrideSet(bytes)), "k1=v1;k2=v2;k3=;");
}

TEST(FormatOverrideSet, Lookup) {
    const std::string bytes = "k\tz\nk\ta\nkey\tlong\nempty\t";
    const FormatOverrideSet set(bytes);
    EXPECT_EQ(set.GetOverride("k"), UStringRef<UTF8>("a"));
    EXPECT_EQ(set.GetOverride("key"), UStringRef<UTF8>("long"));
    EXPECT_TRUE(set.HasOverride("empty"));
    EXPECT_EQ(set.GetOverride("empty"), UStringRef<UTF8>(""));
    for (const char* missing : {"", "ke", "keys", "K", "z"}) {
        SCOPED_TRACE(missing);
        EXPECT_FALSE(set.HasOverride(missing));
        EXPECT_THROW(set.GetOverride(missing), FormatOverrideNotFound);
    }
}

TEST(FormatOverrideSet, RefusesOversizedFileBeforeReadingIt) {
    // Only the length is looked at, so a bogus length is safe to pass here.
    const char byte = 'x';
    EXPECT_THROW(FormatOverrideSet(UStringRef<UTF8>(&byte, std::size_t{1} << 32)), RequiredValueWouldOverflow);
}

TEST(FormatOverrideContext, NewestScopeWinsAndScopesUnlink) {
    const std::string older = "shared\told\nonlyOld\tfrom old";
    const std::string middle = "onlyMiddle\tfrom middle\nshared\tmiddle";
    const std::string newer = "shared\tnew";
    const FormatOverrideSet olderSet(older), middleSet(middle), newerSet(newer);
    FormatOverrideContext context;
    const FormatOverrideScope first(olderSet, context);
    const FormatOverrideScope second(middleSet, context);
    {
        const FormatOverrideScope third(newerSet, context);
        struct Case { const char* key; const char* text; };
        const Case kCases[] = {
            {"shared", "new"},
            {"onlyOld", "from old"},
            {"onlyMiddle", "from middle"},
            {"absent", "default"},
        };
        for (const Case& c : kCases) {
            SCOPED_TRACE(c.key);
            EXPECT_EQ(context.Override(c.key, "default"), UStringRef<UTF8>(c.text));
        }
        EXPECT_FALSE(context.HasOverride("absent"));
    }
    EXPECT_EQ(context.Override("shared", "default"), UStringRef<UTF8>("middle"));
}

TEST(FormatOverrideContext, ContextMayDieBeforeItsScopes) {
    const std::string bytes = "a\tb";
    const FormatOverrideSet set(bytes);
    auto context = std::make_unique<FormatOverrideContext>();
    FormatOverrideScope scope(set, *context);
    context.reset();
    EXPECT_FALSE(scope.IsLinked());
}

}  // namespace
