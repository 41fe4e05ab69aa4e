#include "ui/ScaleRule.h"

#include <gtest/gtest.h>

namespace {

using std::nullopt;

// The "scale" resource decides when it holds a number (read alike in every
// locale), then Xft.dpi, then the screen's density.
TEST(ScaleRule, ResourceThenXftDpiThenScreenDensityInHalves) {
    const struct {
        const char* resource;
        std::optional<double> xftDpi, screenDpi;
        double scale;
    } cases[] = {
        {"", nullopt, DotsPerInchOfScreen(1024, 260), 1},  // Xvfb's default: about 100 dpi
        {"", nullopt, DotsPerInchOfScreen(3840, 508), 2},  // 192 dpi
        {"", nullopt, DotsPerInchOfScreen(3840, 0), 1},    // a server that reports no size
        {"1,5", 119.9, 192, 1}, {"0", 120, 96, 1.5}, {"-2", 168, nullopt, 2}, {"2x", 216, nullopt, 2.5},
        {"nan", 1e6, nullopt, 8}, {" 1.25\t", 192, 192, 1.25}, {"192.", nullopt, nullopt, 8}, {"0.01", 96, 96, 0.25},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(ChosenScale(PositiveNumber(c.resource), c.xftDpi, c.screenDpi), c.scale) << '"' << c.resource << '"';
    }
    EXPECT_EQ(ScaledPixels(1, 0.25), 1);  // never a size of 0
    EXPECT_EQ(ScaledPixels(0, 2), 0);     // a border of none stays none
}

}  // namespace
