// Where Tab, Shift+Tab and a list's keys move, without X.
#include "ui/FocusSteps.h"

#include <gtest/gtest.h>

#include <tuple>

namespace {

TEST(FocusSteps, TheFocusSkipsWhatTakesNoInputAndGoesRound) {
    const std::vector<bool> some = {true, false, true, false};  // 0 and 2 take input
    for (const auto& [from, step, next] : {std::tuple{0, 1, 2}, {2, 1, 0}, {1, -1, 0}, {0, -1, 2}, {-1, 1, 0}}) {
        EXPECT_EQ(NextSensitive(some, from, step), next) << from << " by " << step;
    }
    EXPECT_EQ(NextSensitive({false, false}, 0, 1), -1);
    EXPECT_EQ(SettledFocus(some, 2), 2);  // stays while it takes input
    EXPECT_EQ(SettledFocus(some, 3), 0);  // else the next one, round the end
    EXPECT_EQ(SettledFocus({false}, 0), -1);
}

TEST(FocusSteps, ListKeysStopAtEitherEnd) {
    const struct {
        const char* key;
        int current, next;
    } cases[] = {{"down", 9, 9},     {"up", 0, 0},     {"home", 7, 0},   {"end", 2, 9},
                 {"pageDown", 2, 6}, {"pageDown", 8, 9}, {"pageUp", 3, 0}, {"up", -1, 0}, {"end", -1, 9}};
    for (const auto& c : cases) {
        const std::optional<ListStep> step = ListStepNamed(c.key);
        ASSERT_TRUE(step) << c.key;
        EXPECT_EQ(SteppedRow(c.current, 10, *step, 4), c.next) << c.key << " from " << c.current;
    }
    EXPECT_EQ(SteppedRow(0, 0, ListStep::Down, 4), -1);
    EXPECT_EQ(SteppedRow(2, 10, ListStep::PageDown, 0), 3);  // a viewport lower than a row pages by one
}

}  // namespace
