// The action request dialog's choices and sums, without a display.

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

#include "ui/ActionDialogGeometry.h"
#include "ui/SnoozeChoices.h"

namespace {

constexpr std::int64_t kMinute = 60000000;

TEST(SnoozeChoices, TheDefaultIsTheNearestEntryTheEarlierOnATie) {
    struct Case {
        bool deadline;
        std::int64_t remind;
        const char* chosen;
    };
    const Case cases[] = {
        {false, 5 * kMinute, "in 5 minutes"},
        {false, 0, "in 1 minute"},
        {false, 7 * kMinute + kMinute / 2, "in 5 minutes"},  // halfway to 10
        {false, 8 * kMinute, "in 10 minutes"},
        {false, std::numeric_limits<std::int64_t>::max(), "in 5 days"},
        {false, std::numeric_limits<std::int64_t>::min(), "in 1 minute"},
        {false, -15 * kMinute, "in 1 minute"},  // a deadline entry not offered again
        {true, -15 * kMinute, "15 minutes before deadline"},
        {true, -5 * kMinute, "5 minutes before deadline"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.remind);
        const std::vector<SnoozeEntry> entries = SnoozeEntries(c.deadline);
        EXPECT_EQ(entries.size(), c.deadline ? 19u : 17u);
        EXPECT_STREQ(entries[static_cast<std::size_t>(DefaultSnoozeIndex(entries, TimeInterval(c.remind)))].text,
                     c.chosen);
    }
    EXPECT_EQ(DefaultSnoozeIndex({}, TimeInterval()), -1);
}

TEST(SnoozeChoices, SecondsUntilTheDeadlineStayWithin32Bits) {
    const Instant now(1795348800LL * 1000000);
    EXPECT_EQ(SecondsUntil(now - TimeInterval(1), now), 0u);
    EXPECT_EQ(SecondsUntil(now + TimeInterval(1800 * 1000000LL + 999999), now), 1800u);
    EXPECT_EQ(SecondsUntil(Instant(std::numeric_limits<std::int64_t>::max()), now), 4294967295u);
}

TEST(ActionDialogGeometry, ButtonsStandRightAlignedAndNeverOverlap) {
    const ButtonRowPlaces places = PlaceButtonRow({500, 1, 4, 120, 92, 106, 106});
    EXPECT_EQ(places.take + 92 + 2, 500 + 3);  // right edge under the description's
    EXPECT_EQ(places.cancel, 297);
    EXPECT_EQ(places.details, 185);
    const ButtonRowPlaces wide = PlaceButtonRow({500, 1, 4, 200, 150, 150, 150});
    EXPECT_EQ(wide.details, 4 + 200 + 2 + 4);  // moved right, 4 B beside "takeAllActions"
    EXPECT_EQ(wide.cancel - (wide.details + 150 + 2), 4);
    EXPECT_EQ(PlaceSnoozeButton({500, 1, 4, 0, 0, 0, 0}, 50, 420), 451);
    EXPECT_EQ(PlaceSnoozeButton({500, 1, 4, 0, 0, 0, 0}, 120, 420), 424);
}

TEST(ActionDialogGeometry, ListSizesAreCutNeverWrapped) {
    const ListSize small = OneColumnListSize(3, 15, 2, 100, 2, 6);
    EXPECT_TRUE(small.fits);
    EXPECT_EQ(small.height, 49);
    const ListSize many = OneColumnListSize(50000, 15, 2, 100, 2, 6);
    EXPECT_FALSE(many.fits);
    EXPECT_EQ(many.height, kLargestListExtent);
    EXPECT_EQ(many.blankRows, 0);
    EXPECT_EQ(OneColumnListSize(4096, 16, 0, 1, 0, 0).blankRows, 1);  // 65536 would read as 0
    EXPECT_EQ(OneColumnListSize(0, 15, 2, 0, 2, 6).height, 19);      // the blank row an empty list shows
}

TEST(ActionDialogGeometry, TitlesBecomeOneLineCutAtACharacter) {
    EXPECT_EQ(OneLineTitle("a\tb\nc\r{x}"), "a b c {x}");
    std::string accents;
    for (int i = 0; i < 600; ++i) accents += "\xc3\xa9";
    EXPECT_EQ(OneLineTitle(accents), accents.substr(0, 2 * kLargestTitleCharacters));
}

}  // namespace
