#pragma once

// The rule behind the factor every pixel size of the dialogs is multiplied
// by, free of X: the sizes were chosen for screens of about 96 dots per inch,
// and on a denser screen they would leave the text a few points high.

#include <optional>
#include <string_view>

// The density the dialogs' pixel sizes were chosen for.
constexpr double kDotsPerInchAtScaleOne = 96;

// The smallest and largest factor taken: below the first a box holds no
// readable text, above the second the widest dialog (500 pixels and its
// buttons) would no longer fit the toolkit's 16-bit sizes.
constexpr double kSmallestScale = 0.25;
constexpr double kLargestScale = 8;

// The factor for a screen of `dotsPerInch`: 1 below 120 (the screens the
// sizes were made for, and a little denser), else dotsPerInch / 96 rounded to
// the nearest half, so the fonts of the next size up suit it.
double ScaleForDotsPerInch(double dotsPerInch);

// The density of a screen `pixels` wide and `millimetres` wide; none when the
// server reports no size (0 mm), as some virtual servers do.
std::optional<double> DotsPerInchOfScreen(int pixels, int millimetres);

// A number given by a resource ("2", "1.5", "192."), read the same in every
// locale; none unless the whole text (blanks around it aside) is a positive
// finite number.
std::optional<double> PositiveNumber(std::string_view text);

// The factor in force: the "scale" resource when it holds a number (kept
// within kSmallestScale and kLargestScale), else the one for the density
// "Xft.dpi" names, else the one for the screen's density, else 1.
double ChosenScale(std::optional<double> scaleResource, std::optional<double> xftDotsPerInch,
                   std::optional<double> screenDotsPerInch);

// `pixels` multiplied by `scale`, rounded to the nearest pixel and kept
// within 32767; a size above 0 stays at least 1 (the server refuses a window
// of size 0), and 0 (or less) gives 0.
int ScaledPixels(int pixels, double scale);
