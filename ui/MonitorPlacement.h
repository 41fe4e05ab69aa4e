#pragma once

// Where a dialog goes on a desktop of one or more monitors (heads), free of
// X: on the head that holds the pointer, centred, or a step right of and
// below the last message there, and always wholly on that head. Positions
// and sizes are in the root window's pixels; a size is the window's outer
// size, borders included.

#include <optional>
#include <vector>

struct ScreenPoint {
    int x;
    int y;
};

struct DialogSize {
    int width;
    int height;
};

// One monitor's part of the screen. Two heads are the same only at the same
// place and of the same size: a monitor that was replaced by another one of
// a different size is gone.
struct Head {
    int x;
    int y;
    int width;
    int height;

    bool Holds(ScreenPoint point) const;
};
bool operator==(const Head& a, const Head& b);
bool operator!=(const Head& a, const Head& b);

// The heads to place on: the reported ones in their order, or the whole
// screen alone when none is reported (no multi-monitor support on the
// server, or it reports nothing).
std::vector<Head> HeadsOrScreen(std::vector<Head> reported, const Head& screen);

// The first head that holds the pointer. The first head when none does or
// the pointer is unknown (on another screen, or in a gap between monitors).
// `heads` is never empty (HeadsOrScreen).
Head HeadUnderPointer(const std::vector<Head>& heads, std::optional<ScreenPoint> pointer);

// The origin that keeps a dialog of `size` wholly on `head`, moved as little
// as it can be. One larger than the head keeps its top-left corner on the
// head, where its title and first lines are.
ScreenPoint KeptOn(const Head& head, ScreenPoint origin, DialogSize size);

// The dialog centred on the head (halved toward zero), kept on it.
ScreenPoint CentredOn(const Head& head, DialogSize size);

// How far each new message is set right of and below the last one, so that
// the title and edge of every earlier one still show.
constexpr int kCascadeStep = 24;

// A message placed while another one, at `last`, is open on the same head:
// kCascadeStep right and down. A message that would reach past the head's
// right edge starts again at its left, past its bottom edge at its top; then
// it is kept on the head.
ScreenPoint CascadedFrom(ScreenPoint last, const Head& head, DialogSize size);
