#include "ui/DialogLayout.h"

#include <algorithm>
#include <cwchar>

#include "ui/ScaleRule.h"

namespace {

int Bounded(int distance, int spanLeft) {
    return std::clamp(distance, std::max(spanLeft, 0), kLargestDistance);
}

}  // namespace

std::string OneLineLabel(std::string_view localText) {
    std::string line;
    line.reserve(std::min(localText.size(), kLargestLabelCharacters * 4));
    std::mbstate_t state{};
    std::size_t characters = 0;
    for (std::size_t at = 0; at < localText.size() && characters < kLargestLabelCharacters; ++characters) {
        const unsigned char byte = static_cast<unsigned char>(localText[at]);
        if (byte < 0x20 || byte == 0x7f) {
            line += ' ';
            ++at;
            continue;
        }
        std::size_t length = std::mbrlen(localText.data() + at, localText.size() - at, &state);
        if (length == 0 || length > localText.size() - at) {
            // Unreadable or cut short: one byte, and the decoder starts afresh.
            length = 1;
            state = std::mbstate_t{};
        }
        line.append(localText.substr(at, length));
        at += length;
    }
    return line;
}

int CentredDistance(int spanLeft, int spanOuter, int itemOuter) {
    return Bounded(spanLeft + std::max(spanOuter - itemOuter, 0) / 2, spanLeft);
}

PairDistances SpacedPairDistances(int spanLeft, int spanOuter, int firstOuter, int secondOuter, int gap) {
    const int first = CentredDistance(spanLeft, spanOuter, firstOuter + gap + secondOuter);
    return {first, Bounded(first + firstOuter + gap, spanLeft)};
}

int ConfirmationTextWidth(int staticLabelWidth, double scale) {
    return std::clamp(staticLabelWidth, ScaledPixels(kNarrowestConfirmationText, scale), kLargestDistance);
}
