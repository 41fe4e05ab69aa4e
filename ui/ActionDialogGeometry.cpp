#include "ui/ActionDialogGeometry.h"

#include <algorithm>

#include "ui/ScaleRule.h"

namespace {

// The room between two buttons of a row, outer edge to outer edge.
int ButtonGap(const ButtonRowSizes& s) { return ScaledPixels(4 * s.border, s.scale); }

}  // namespace

ButtonRowPlaces PlaceButtonRow(const ButtonRowSizes& s) {
    const int b = s.border;
    const int gap = ButtonGap(s);
    ButtonRowPlaces places{};
    places.take = s.descriptionWidth + b - s.take;
    places.cancel = places.take - gap - s.cancel - 2 * b;
    places.details = places.cancel - gap - s.details - 2 * b;
    // The right edge of "takeAllActions" and the gap every pair keeps.
    const int leftmost = s.defaultDistance + s.takeAll + 2 * b + gap;
    if (places.details < leftmost) {
        const int shift = leftmost - places.details;
        places.take += shift;
        places.cancel += shift;
        places.details += shift;
    }
    return places;
}

int PlaceSnoozeButton(const ButtonRowSizes& s, int snoozeButton, int viewportRight) {
    return std::max(s.descriptionWidth + s.border - snoozeButton, viewportRight + ButtonGap(s));
}

ListSize OneColumnListSize(long rows, int rowHeight, int internalHeight, long longest, int internalWidth,
                           int columnSpacing) {
    const long height = std::max(rows, 1L) * rowHeight + 2L * internalHeight;
    ListSize size{longest + 2L * internalWidth + columnSpacing, height, true, height % 65536 == 0 ? 1 : 0};
    size.fits = size.width <= kLargestListExtent && size.height <= kLargestListExtent;
    size.width = std::clamp(size.width, 1L, static_cast<long>(kLargestListExtent));
    size.height = std::clamp(size.height, 1L, static_cast<long>(kLargestListExtent));
    return size;
}

std::string OneLineTitle(UStringRef<UTF8> title) {
    std::string line;
    line.reserve(std::min(title.Size(), kLargestTitleCharacters * 4));
    std::size_t characters = 0;
    for (const char c : title.View()) {
        const auto byte = static_cast<unsigned char>(c);
        const bool continuation = (byte & 0xC0) == 0x80;
        if (!continuation && characters++ == kLargestTitleCharacters) break;
        line.push_back(byte < 0x20 || byte == 0x7F ? ' ' : c);
    }
    return line;
}
