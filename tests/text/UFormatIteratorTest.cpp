#include "text/UFormatIterator.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// Segments written as "L(text)" or "V(name)", one after the other.
std::string Scan(UStringRef<UTF8> text) {
    std::string out;
    for (UFormatIterator it(text), end = UFormatIterator::End(text); it != end; ++it) {
        out += (it->isVariable ? "V(" : "L(") + it->text.ToString() + ")";
    }
    return out;
}

TEST(UFormatIterator, SplitsIntoSegments) {
    struct Case { const char* text; const char* segments; };
    const Case kCases[] = {
        {"", ""},
        {"plain", "L(plain)"},
        {"{x}", "V(x)"},
        {"You Have {number} New Offers", "L(You Have )V(number)L( New Offers)"},
        {"{a}{b}", "V(a)V(b)"},
        {"a}b", "L(a}b)"},
        {"}{x}}", "L(})V(x)L(})"},
        {"{}", "V()"},
        {"{x y}", "V(x y)"},
        {"{{x}", "V({x)"},  // a "{" inside a placeholder belongs to the name
        {"{_obrace}x{_cbrace}", "V(_obrace)L(x)V(_cbrace)"},
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(Scan(c.text), c.segments);
    }
}

TEST(UFormatIterator, UnclosedBraceThrowsWhenReached) {
    const char* const kBad[] = {"{", "a{b", "{x}{", "}{", "ab{cd{"};
    for (const char* text : kBad) {
        SCOPED_TRACE(text);
        EXPECT_THROW(Scan(text), BadFormatStringError);
    }
    // Scanning is lazy: the literal before the bad brace is still yielded.
    UFormatIterator it(UStringRef<UTF8>("ab{"));
    EXPECT_EQ(it->text, UStringRef<UTF8>("ab"));
    EXPECT_THROW(it.GetNextSegment(), BadFormatStringError);
}

TEST(UFormatIterator, EmptyTextStartsAtEnd) {
    const UStringRef<UTF8> text("");
    EXPECT_TRUE(UFormatIterator(text) == UFormatIterator::End(text));
    EXPECT_TRUE(UFormatIterator(text).AtEnd());
}

}  // namespace
