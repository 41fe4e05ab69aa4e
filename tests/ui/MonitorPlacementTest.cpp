// Where dialogs go on a desktop of several monitors: the head under the
// pointer, each dialog wholly on it, messages stepped so that none hides
// another.

#include <optional>
#include <ostream>
#include <set>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "ui/MonitorPlacement.h"

void PrintTo(const Head& head, std::ostream* out) {
    *out << head.width << "x" << head.height << "+" << head.x << "+" << head.y;
}
void PrintTo(const ScreenPoint& point, std::ostream* out) {
    *out << "(" << point.x << ", " << point.y << ")";
}
bool operator==(const ScreenPoint& a, const ScreenPoint& b) {
    return a.x == b.x && a.y == b.y;
}

namespace {

// Two monitors side by side, then the whole screen, in the order a server
// that joins them reports them.
const Head kLeft{0, 0, 1280, 1024};
const Head kRight{1280, 0, 1280, 1024};
const Head kScreen{0, 0, 2560, 1024};
const std::vector<Head> kTwoMonitors{kLeft, kRight, kScreen};

TEST(MonitorPlacement, TheHeadUnderThePointer) {
    struct Case {
        const char* what;
        std::vector<Head> reported;
        std::optional<ScreenPoint> pointer;
        Head chosen;
    };
    const Case cases[] = {
        {"right monitor, not the whole screen listed after it", kTwoMonitors, ScreenPoint{1900, 500}, kRight},
        {"left monitor", kTwoMonitors, ScreenPoint{500, 500}, kLeft},
        {"the right monitor's first column", kTwoMonitors, ScreenPoint{1280, 0}, kRight},
        {"the left monitor's last pixel", kTwoMonitors, ScreenPoint{1279, 1023}, kLeft},
        {"in a gap between monitors: the first", {kLeft, {1400, 0, 800, 600}}, ScreenPoint{1300, 700}, kLeft},
        {"pointer on another screen: the first", kTwoMonitors, std::nullopt, kLeft},
        {"no monitor reported: the whole screen", {}, ScreenPoint{1900, 500}, kScreen},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(HeadUnderPointer(HeadsOrScreen(c.reported, kScreen), c.pointer), c.chosen);
    }
}

TEST(MonitorPlacement, CentredAndWhollyOnItsHead) {
    struct Case {
        const char* what;
        Head head;
        DialogSize size;
        ScreenPoint origin;
    };
    const Case cases[] = {
        {"on the right monitor", kRight, {500, 300}, {1670, 362}},
        {"odd room halved toward zero", {0, 0, 1001, 767}, {500, 300}, {250, 233}},
        {"a monitor below the first", {0, 1024, 800, 600}, {200, 100}, {300, 1274}},
        {"wider than its monitor: its left edge on the monitor's", kRight, {1400, 300}, {1280, 362}},
        {"larger both ways: its top-left corner on the monitor's", {100, 50, 640, 480}, {800, 600}, {100, 50}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(CentredOn(c.head, c.size), c.origin);
    }
}

TEST(MonitorPlacement, EachMessageStepsRightAndDownAndWrapsWithinItsHead) {
    struct Case {
        const char* what;
        ScreenPoint last;
        DialogSize size;
        ScreenPoint next;
    };
    const Case cases[] = {
        {"a step right and down", {1670, 437}, {500, 150}, {1694, 461}},
        {"just fits at the bottom-right corner", {2036, 850}, {500, 150}, {2060, 874}},
        {"past the right edge: from the left edge", {2050, 437}, {500, 150}, {1280, 461}},
        {"past the bottom: from the top", {1670, 860}, {500, 150}, {1694, 0}},
        {"past both: from the corner", {2050, 860}, {500, 150}, {1280, 0}},
        {"larger than the monitor: at its corner", {1280, 0}, {1400, 1100}, {1280, 0}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(CascadedFrom(c.last, kRight, c.size), c.next);
    }

    // A long run of messages stays on the monitor, and none lands where an
    // earlier one is.
    const DialogSize message{500, 150};
    std::set<std::pair<int, int>> taken;
    ScreenPoint at = CentredOn(kRight, message);
    for (int shown = 0; shown < 100; ++shown, at = CascadedFrom(at, kRight, message)) {
        EXPECT_EQ(KeptOn(kRight, at, message), at) << shown;
        EXPECT_TRUE(taken.insert({at.x, at.y}).second) << shown;
    }
}

}  // namespace
