#include "ui/ScaleRule.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace {

constexpr double kMillimetresPerInch = 25.4;
// Denser than this, the sizes made for 96 dots per inch read too small.
constexpr double kDensestAtScaleOne = 120;
constexpr int kLargestPixels = 32767;

}  // namespace

double ScaleForDotsPerInch(double dotsPerInch) {
    if (!(dotsPerInch >= kDensestAtScaleOne)) return 1;
    return std::clamp(std::round(dotsPerInch / kDotsPerInchAtScaleOne * 2) / 2, 1.0, kLargestScale);
}

std::optional<double> DotsPerInchOfScreen(int pixels, int millimetres) {
    if (pixels <= 0 || millimetres <= 0) return std::nullopt;
    return pixels * kMillimetresPerInch / millimetres;
}

std::optional<double> PositiveNumber(std::string_view text) {
    const auto blank = [](char c) { return c == ' ' || c == '\t'; };
    while (!text.empty() && blank(text.front())) text.remove_prefix(1);
    while (!text.empty() && blank(text.back())) text.remove_suffix(1);
    double value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value, std::chars_format::fixed);
    if (error != std::errc() || stop != end || !std::isfinite(value) || value <= 0) return std::nullopt;
    return value;
}

double ChosenScale(std::optional<double> scaleResource, std::optional<double> xftDotsPerInch,
                   std::optional<double> screenDotsPerInch) {
    if (scaleResource) return std::clamp(*scaleResource, kSmallestScale, kLargestScale);
    if (xftDotsPerInch) return ScaleForDotsPerInch(*xftDotsPerInch);
    if (screenDotsPerInch) return ScaleForDotsPerInch(*screenDotsPerInch);
    return 1;
}

int ScaledPixels(int pixels, double scale) {
    if (pixels <= 0) return 0;
    const double scaled = std::round(pixels * scale);
    return static_cast<int>(std::clamp(scaled, 1.0, static_cast<double>(kLargestPixels)));
}
