#include "text/FormatBindings.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

enum class Outcome { Ok, Improper, Undefined, TooMany, TooFew, BadFormat };

// Runs `call`, reporting how it ended.
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
        {"x", Outcome::Ok},
        {"number", Outcome::Ok},
        {"a_B9", Outcome::Ok},
        {"9lives", Outcome::Ok},
        {"-a", Outcome::Ok},         // the first character is not checked
        {" x", Outcome::Ok},
        {"\xC3\xA9" "clair", Outcome::Ok},  // nor is a multibyte first character
        {"x-", Outcome::Improper},
        {"x y", Outcome::Improper},
        {"a\xC3\xA9", Outcome::Improper},
        {"", Outcome::Improper},
        {"_tab", Outcome::Ok},
        {"_crlf", Outcome::Ok},
        {"_nl", Outcome::Undefined},
        {"_", Outcome::Undefined},
        {"_Tab", Outcome::Undefined},
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(OutcomeOf([&] { CheckFormatVariableName(c.name); }), c.outcome);
    }
}

// Bindings written as "name=value;" in sorted order.
std::string Bind(const char* key, std::vector<UStringRef<UTF8>> args, std::size_t slots) {
    std::vector<FormatBinding> out(slots);
    MakeFormatParameterBindings(key, args.data(), args.size(), out.data(), out.size());
    std::string text;
    for (const FormatBinding& b : out) {
        text += b.name.ToString() + "=" + b.value.ToString() + ";";
    }
    return text;
}

TEST(FormatBindings, BindsByOccurrenceAndSorts) {
    struct Case { const char* key; std::vector<UStringRef<UTF8>> args; const char* bound; Outcome outcome; };
    const Case kCases[] = {
        {"no placeholders", {}, "", Outcome::Ok},
        {"{b} then {a}", {"1", "2"}, "a=2;b=1;", Outcome::Ok},
        {"{x}{_tab}{_obrace}", {"v"}, "x=v;", Outcome::Ok},  // built-ins take no argument
        {"{x} and {x}", {"second", "first"}, "x=first;x=second;", Outcome::Ok},
        {"{x}", {}, "", Outcome::TooMany},
        {"{a}{b}", {"1"}, "", Outcome::TooMany},
        {"plain", {"1"}, "", Outcome::TooFew},
        {"{a}", {"1", "2"}, "", Outcome::TooFew},
        {"{x y}", {"1"}, "", Outcome::Improper},
        {"{}", {}, "", Outcome::Improper},
        {"{_nl}", {}, "", Outcome::Undefined},
        {"{x", {"1"}, "", Outcome::BadFormat},
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.key);
        std::string bound;
        EXPECT_EQ(OutcomeOf([&] { bound = Bind(c.key, c.args, c.args.size()); }), c.outcome);
        EXPECT_EQ(bound, c.bound);
    }
}

TEST(FormatBindings, SlotCountIsHonouredOnItsOwn) {
    // More arguments than slots must not write past the slots.
    EXPECT_THROW(Bind("{a}{b}", {"1", "2"}, 1), TooManyFormatArguments);
    EXPECT_THROW(Bind("{a}", {"1"}, 2), TooFewFormatArguments);
}

TEST(FormatBindings, ExpressionValues) {
    const FormatBinding kBound[] = {{"a", "1"}, {"x", "first"}, {"x", "second"}, {"x y", "odd"}};
    struct Case { const char* name; const char* value; Outcome outcome; };
    const Case kCases[] = {
        {"a", "1", Outcome::Ok},
        {"x", "first", Outcome::Ok},  // of repeated names, the value that sorts first
        {"x y", "odd", Outcome::Ok},  // no name check at look-up
        {"_cbrace", "}", Outcome::Ok},
        {"_cr", "\r", Outcome::Ok},
        {"_crlf", "\r\n", Outcome::Ok},
        {"_lf", "\n", Outcome::Ok},
        {"_obrace", "{", Outcome::Ok},
        {"_tab", "\t", Outcome::Ok},
        {"_a", "", Outcome::Undefined},  // reserved names never reach the bindings
        {"b", "", Outcome::Undefined},
        {"x ", "", Outcome::Undefined},
        {"", "", Outcome::Improper},
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.name);
        UStringRef<UTF8> value;
        EXPECT_EQ(OutcomeOf([&] { value = FormatExpressionValue(c.name, kBound, 4); }), c.outcome);
        EXPECT_EQ(value, UStringRef<UTF8>(c.value));
    }
    EXPECT_THROW(FormatExpressionValue("a", nullptr, 0), UndefinedFormatVariable);
}

}  // namespace
