// The action request dialog's choices and sums that no display test reaches.

#include <gtest/gtest.h>

#include <limits>

#include "ui/ActionDialogGeometry.h"
#include "app/SnoozeChoices.h"

namespace {

TEST(ActionDialogChoices, TheSnoozeDefaultAtTiesAndExtremes) {
    constexpr std::int64_t kMinute = 60000000, kMax = std::numeric_limits<std::int64_t>::max();
    const std::pair<std::int64_t, const char*> cases[] = {
        {7 * kMinute + kMinute / 2, "in 5 minutes"},  // halfway: the earlier entry
        {kMax, "in 5 days"}, {-kMax - 1, "in 1 minute"}, {0, "in 1 minute"}};
    const std::vector<SnoozeEntry> entries = SnoozeEntries(false);
    for (const auto& [remind, chosen] : cases) {
        EXPECT_STREQ(entries[static_cast<std::size_t>(DefaultSnoozeIndex(entries, TimeInterval(remind)))].text, chosen);
    }
    EXPECT_EQ(SecondsUntil(Instant(kMax), Instant(0)), 4294967295u);
}

TEST(ActionDialogChoices, ListSizesAreCutAndNeverSumToZero) {
    EXPECT_EQ(OneColumnListSize(4096, 16, 0, 1, 0, 0).blankRows, 1);  // 65536 would read as 0
    EXPECT_EQ(OneColumnListSize(4097, 16, 0, 1, 0, 0).blankRows, 0);
}

TEST(ActionDialogChoices, TitlesAreOneLineCutAtACharacter) {
    EXPECT_EQ(OneLineTitle("a\tb\nc\r{x}"), "a b c {x}");
    std::string accents;
    for (int i = 0; i < 600; ++i) accents += "\xc3\xa9";
    EXPECT_EQ(OneLineTitle(accents), accents.substr(0, 2 * kLargestTitleCharacters));
}

}  // namespace
