// Where dialogs go on several monitors: the head under the pointer, each
// dialog wholly on it, messages stepped so that none hides another.
#include <optional>
#include <utility>

#include <gtest/gtest.h>

#include "ui/MonitorPlacement.h"

namespace {

// Two monitors side by side, then the whole screen, as a server that joins them lists them.
const Head kLeft{0, 0, 1280, 1024}, kRight{1280, 0, 1280, 1024}, kScreen{0, 0, 2560, 1024};

std::pair<int, int> XY(ScreenPoint point) { return {point.x, point.y}; }

TEST(MonitorPlacement, TheFirstHeadUnderThePointerElseTheFirstElseTheScreen) {
    const std::vector<Head> two{kLeft, kRight, kScreen};
    EXPECT_EQ(HeadUnderPointer(two, ScreenPoint{1900, 500}), kRight);  // not the screen listed after it
    EXPECT_EQ(HeadUnderPointer(two, ScreenPoint{1280, 0}), kRight);
    EXPECT_EQ(HeadUnderPointer(two, ScreenPoint{1279, 1023}), kLeft);
    EXPECT_EQ(HeadUnderPointer({kLeft, {1400, 0, 800, 600}}, ScreenPoint{1300, 700}), kLeft);  // in a gap
    EXPECT_EQ(HeadUnderPointer(two, std::nullopt), kLeft);  // the pointer on another screen
    EXPECT_EQ(HeadUnderPointer(HeadsOrScreen({}, kScreen), ScreenPoint{1900, 500}), kScreen);
}

TEST(MonitorPlacement, CentredOrSteppedFromTheLastMessageAndWhollyOnTheHead) {
    struct Case {
        Head head;
        DialogSize size;
        std::optional<ScreenPoint> last;  // the last message's place, if one is open
        std::pair<int, int> origin;
    };
    const Case cases[] = {
        {kRight, {500, 300}, {}, {1670, 362}},
        {{0, 0, 1001, 767}, {500, 300}, {}, {250, 233}},      // halved toward zero
        {{0, 1024, 800, 600}, {200, 100}, {}, {300, 1274}},   // a monitor below another
        {kRight, {1400, 300}, {}, {1280, 362}},               // wider than the monitor: left edges meet
        {{100, 50, 640, 480}, {800, 600}, {}, {100, 50}},     // larger both ways: top-left corners meet
        {kRight, {500, 150}, ScreenPoint{1670, 437}, {1694, 461}},
        {kRight, {500, 150}, ScreenPoint{2036, 850}, {2060, 874}},  // just fits the bottom-right corner
        {kRight, {500, 150}, ScreenPoint{2050, 437}, {1280, 461}},  // past the right edge: from the left
        {kRight, {500, 150}, ScreenPoint{1670, 860}, {1694, 0}},    // past the bottom: from the top
        {kRight, {1400, 1100}, ScreenPoint{1280, 0}, {1280, 0}},    // larger: stays at the corner
    };
    for (const Case& c : cases) {
        const ScreenPoint origin = c.last ? CascadedFrom(*c.last, c.head, c.size) : CentredOn(c.head, c.size);
        EXPECT_EQ(XY(origin), c.origin) << "case " << &c - cases;
    }
}

}  // namespace
