#pragma once

// The sums and text rules behind the layout of the details, confirmation,
// message and quiet-mode dialogs, free of X. The toolkit keeps sizes in
// unsigned 16 bits and positions in signed 16 bits, so nothing here may grow
// past what those hold.

#include <cstddef>
#include <string>
#include <string_view>

// The most characters a one-line label or window title shows. With a font of
// up to 60 pixels a character the label stays within 32767 pixels, so its
// size never wraps however long the text it came from.
constexpr std::size_t kLargestLabelCharacters = 500;

// The largest horizontal distance handed to a Form child.
constexpr int kLargestDistance = 32767;

// A text in the locale's encoding made fit for a label or a window title: one
// line (tabs, line breaks and the other control characters read as blanks)
// of at most kLargestLabelCharacters characters, cut at a character
// boundary. Bytes the locale cannot read count as one character each.
std::string OneLineLabel(std::string_view localText);

// The horizontal distance (from the Form's left edge) that centres an item
// `itemOuter` pixels wide, borders included, under a span that starts at
// `spanLeft` and is `spanOuter` wide. An item wider than the span starts
// where the span starts, so it never reaches past the Form's left edge.
int CentredDistance(int spanLeft, int spanOuter, int itemOuter);

// Two buttons side by side, `gap` apart, the pair centred under the span the
// same way; the second never overlaps the first.
struct PairDistances {
    int first;
    int second;
};
PairDistances SpacedPairDistances(int spanLeft, int spanOuter, int firstOuter, int secondOuter, int gap);

// The confirmation text is as wide as the sentence above it, but never so
// narrow that it cannot be read (a translation may make the sentence short or
// empty) and never wider than a size can hold. The narrowest width grows
// with the dialogs' scale, as the font does.
constexpr int kNarrowestConfirmationText = 200;
int ConfirmationTextWidth(int staticLabelWidth, double scale);
