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
        {"You Have {number} New Offers", "L(You Have )V(number)L( New Offers)"},
        {"{a}{b}", "V(a)V(b)"},
        {"}{x}}", "L(})V(x)L(})"},
        {"{}", "V()"},
        {"{x y}", "V(x y)"},
        {"{{x}", "V({x)"},  // a "{" inside a placeholder belongs to the name
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(Scan(c.text), c.segments);
    }
}

TEST(UFormatIterator, UnclosedBraceThrowsWhenReached) {
    for (const char* text : {"{", "a{b", "{x}{", "}{"}) {
        SCOPED_TRACE(text);
        EXPECT_THROW(Scan(text), BadFormatStringError);
    }
    UFormatIterator it(UStringRef<UTF8>("ab{"));
    EXPECT_EQ(it->text, UStringRef<UTF8>("ab"));
    EXPECT_THROW(it.GetNextSegment(), BadFormatStringError);
}

}  // namespace
