#include "ui/ScaleRule.h"

#include <cmath>
#include <optional>

#include <gtest/gtest.h>

namespace {

using std::nullopt;

TEST(ScaleRule, DensityGivesTheScaleInHalves) {
    const struct {
        double dotsPerInch;
        double scale;
    } cases[] = {
        {0, 1},      {96, 1},      {119.9, 1}, {120, 1.5}, {143, 1.5}, {168, 2},
        {192, 2},    {216, 2.5},   {288, 3},   {1e6, 8},   {NAN, 1},
    };
    for (const auto& c : cases) EXPECT_EQ(ScaleForDotsPerInch(c.dotsPerInch), c.scale) << c.dotsPerInch;
}

TEST(ScaleRule, TheResourceThenXftDpiThenTheScreenDecide) {
    // A 1024-pixel screen of 260 mm (Xvfb's default) is about 100 dpi; 3840 of 508 mm is 192.
    EXPECT_EQ(ChosenScale(nullopt, nullopt, DotsPerInchOfScreen(1024, 260)), 1);
    EXPECT_EQ(ChosenScale(nullopt, nullopt, DotsPerInchOfScreen(3840, 508)), 2);
    EXPECT_EQ(DotsPerInchOfScreen(3840, 0), nullopt);
    EXPECT_EQ(ChosenScale(nullopt, nullopt, nullopt), 1);
    EXPECT_EQ(ChosenScale(nullopt, 96, 192), 1);
    EXPECT_EQ(ChosenScale(nullopt, 144, 96), 1.5);
    EXPECT_EQ(ChosenScale(1.25, 192, 192), 1.25);  // taken as given, not rounded
    EXPECT_EQ(ChosenScale(100, nullopt, nullopt), kLargestScale);
    EXPECT_EQ(ChosenScale(0.01, nullopt, nullopt), kSmallestScale);
}

TEST(ScaleRule, ResourceNumbersReadAlikeInEveryLocale) {
    const struct {
        const char* text;
        std::optional<double> number;
    } cases[] = {
        {"2", 2},     {" 1.5\t", 1.5}, {"192.", 192}, {"1,5", nullopt}, {"0", nullopt},   {"-2", nullopt},
        {"2x", nullopt}, {"", nullopt},   {"inf", nullopt}, {"nan", nullopt}, {"1e3", nullopt},
    };
    for (const auto& c : cases) EXPECT_EQ(PositiveNumber(c.text), c.number) << '"' << c.text << '"';
}

TEST(ScaleRule, ScaledPixelsRoundAndStayInRange) {
    EXPECT_EQ(ScaledPixels(500, 1), 500);
    EXPECT_EQ(ScaledPixels(485, 1.5), 728);  // 727.5 rounds up
    EXPECT_EQ(ScaledPixels(1, 0.25), 1);     // never a size of 0
    EXPECT_EQ(ScaledPixels(0, 2), 0);        // no border stays none
    EXPECT_EQ(ScaledPixels(20000, 2), 32767);
}

}  // namespace
