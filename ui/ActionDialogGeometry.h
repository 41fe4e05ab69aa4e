#pragma once

// The sums behind the action request dialog's layout, free of X: where the
// buttons stand, how many rows the action list may hold, and how much of a
// title a row shows. The toolkit keeps sizes in 16 bits (and positions inside
// a viewport in signed 16 bits), so nothing here may grow past what fits.

#include <cstddef>
#include <string>

#include "base/unicode/UString.h"

// The tallest or widest a list may grow: a viewport moves its child to
// negative positions, which hold at most 32767.
constexpr int kLargestListExtent = 32767;

// The most characters of a title a row or the title line shows: with a font
// of up to 60 pixels a character the title line stays within 32767 pixels.
constexpr std::size_t kLargestTitleCharacters = 500;

// Sizes read back from the widgets after creation; widths without borders.
struct ButtonRowSizes {
    int descriptionWidth;  // W, of "actiondesc"
    int border;            // B, the description's border width
    int defaultDistance;   // the form's, at the left of "takeAllActions"
    int takeAll;
    int take;
    int cancel;
    int details;
    double scale;          // DialogScale(): the gaps between buttons grow with it
};

// The horizontal distances (from the form's left edge) of the buttons that
// stand right-aligned under the description: "takeActions" ends where the
// description ends (W + B minus its width, as the form counts from its left
// edge), and "cancelAction" and then "actionDetails" each keep a gap of 4 B
// (times the scale) between outer edges to the one on their right. Should the row not fit
// beside "takeAllActions" (long translated labels), the three move right
// together, 4 B clear of it, and the dialog grows rather than let buttons
// overlap.
struct ButtonRowPlaces {
    int take;
    int cancel;
    int details;
};
ButtonRowPlaces PlaceButtonRow(const ButtonRowSizes& sizes);

// The snooze button's horizontal distance: right-aligned with "takeActions",
// yet never over the snooze viewport, whose right edge (border included) is
// `viewportRight`.
int PlaceSnoozeButton(const ButtonRowSizes& sizes, int snoozeButton, int viewportRight);

// The size a one-column list of `rows` rows asks for: rows `rowHeight` apart
// inside `internal` margins, as wide as its longest row and a column gap.
// `fits` tells whether the list may size itself; otherwise the size is cut to
// kLargestListExtent each way, and rows past the end cannot be scrolled to.
// The list sums its height in 16 bits before it can be told otherwise, and a
// sum that lands on 0 is a size the server refuses: `blankRows` (0 or 1) is
// how many blank rows to add below the last so that it never does.
struct ListSize {
    long width;
    long height;
    bool fits;
    int blankRows;
};
ListSize OneColumnListSize(long rows, int rowHeight, int internalHeight, long longest, int internalWidth,
                           int columnSpacing);

// A title as one line of at most kLargestTitleCharacters characters: tabs,
// line breaks and other control characters read as blanks, and the text is
// cut at a character boundary.
std::string OneLineTitle(UStringRef<UTF8> title);
