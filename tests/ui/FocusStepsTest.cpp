// Where Tab, Shift+Tab and a list's keys move, without X.
#include "ui/FocusSteps.h"

#include <gtest/gtest.h>

namespace {

const std::vector<bool> kSome = {true, false, true, false};  // 0 and 2 take input
const std::vector<bool> kNone = {false, false};

TEST(FocusSteps, TabSkipsWhatTakesNoInputAndGoesRound) {
    const struct {
        const std::vector<bool>& sensitive;
        int from, step, next;
    } cases[] = {
        {kSome, 0, 1, 2},  {kSome, 2, 1, 0},  {kSome, 0, -1, 2}, {kSome, 1, -1, 0},
        {kSome, 3, 1, 0},  {kSome, -1, 1, 0}, {kSome, -1, -1, 2},
        {kNone, 0, 1, -1}, {{true}, 0, 1, 0},  // a lone control keeps the focus
    };
    for (const auto& c : cases) {
        EXPECT_EQ(NextSensitive(c.sensitive, c.from, c.step), c.next) << c.from << " by " << c.step;
    }
}

TEST(FocusSteps, TheFocusLeavesAControlThatStopsTakingInput) {
    EXPECT_EQ(SettledFocus(kSome, 2), 2);
    EXPECT_EQ(SettledFocus(kSome, 1), 2);
    EXPECT_EQ(SettledFocus(kSome, 3), 0);
    EXPECT_EQ(SettledFocus(kNone, 1), -1);
}

TEST(FocusSteps, ListKeysStopAtEitherEnd) {
    const struct {
        const char* key;
        int current, next;
    } cases[] = {
        {"down", 3, 4}, {"down", 9, 9},     {"up", 3, 2},        {"up", 0, 0},         {"home", 7, 0},
        {"end", 2, 9},  {"pageDown", 2, 6}, {"pageDown", 8, 9},  {"pageUp", 5, 1},     {"pageUp", 3, 0},
        {"up", -1, 0},  {"down", -1, 0},    {"end", -1, 9},      // nothing highlighted yet
    };
    for (const auto& c : cases) {
        const std::optional<ListStep> step = ListStepNamed(c.key);
        ASSERT_TRUE(step) << c.key;
        EXPECT_EQ(SteppedRow(c.current, 10, *step, 4), c.next) << c.key << " from " << c.current;
    }
    EXPECT_EQ(SteppedRow(0, 0, ListStep::Down, 4), -1);
    EXPECT_EQ(SteppedRow(2, 10, ListStep::PageDown, 0), 3);  // a list shorter than a row pages by one
    EXPECT_FALSE(ListStepNamed("left"));
}

}  // namespace
