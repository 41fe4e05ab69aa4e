#include "text/UFormatIterator.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// Segments written as "L(text)" or "V(name)", and "!" where the scan threw.
std::string Scan(UStringRef<UTF8> text) {
    std::string out;
    try {
        for (UFormatIterator it(text), end = UFormatIterator::End(text); it != end; ++it) {
            out += (it->isVariable ? "V(" : "L(") + it->text.ToString() + ")";
        }
    } catch (const BadFormatStringError&) {
        out += "!";
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
        // An unclosed brace throws only when the scan reaches it.
        {"{", "!"},
        {"ab{", "L(ab)!"},
        {"{x}{", "V(x)!"},
        {"}{", "L(})!"},
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(Scan(c.text), c.segments);
    }
}

}  // namespace
