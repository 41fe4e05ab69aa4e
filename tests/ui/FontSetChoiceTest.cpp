#include "ui/FontSetChoice.h"

#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

// A server: the fonts it lists and the heights of the font sets it can build
// (patterns missing from the map cannot be built). Records what was tried.
class FakeServer : public FontSetProbe {
public:
    std::vector<std::string> fonts;
    std::map<std::string, int> heights;
    std::vector<std::string> tried;
    int askedFor = -1;

    std::vector<std::string> ListFonts(const char* pattern, int maxNames) override {
        EXPECT_STREQ(pattern, kCandidateFontPattern);
        askedFor = maxNames;
        return fonts;  // more than asked for, when a case wants that
    }
    std::optional<int> FontSetHeight(const std::string& baseNames) override {
        tried.push_back(baseNames);
        const auto found = heights.find(baseNames);
        if (found == heights.end()) return std::nullopt;
        return found->second;
    }
};

constexpr char kTimes[] = "-adobe-times-medium-r-normal--17-120-100-100-p-84-iso8859-1";
constexpr char kTimesSet[] = "-adobe-times-medium-r-normal--17-120-100-100-p-84-*,*";
constexpr char kFixed[] = "-misc-fixed-medium-r-normal--13-120-75-75-c-70-iso8859-1";
constexpr char kFixedSet[] = "-misc-fixed-medium-r-normal--13-120-75-75-c-70-*,*";
constexpr char kCourier[] = "-adobe-courier-medium-r-normal--12-120-75-75-m-70-iso8859-1";
constexpr char kCourierSet[] = "-adobe-courier-medium-r-normal--12-120-75-75-m-70-*,*";

TEST(ChooseDefaultFontSet, PicksTheSmallestBuildableListedFont) {
    struct Case {
        const char* what;
        std::vector<std::string> fonts;
        std::map<std::string, int> heights;
        std::optional<std::string> chosen;
        std::vector<std::string> tried;  // after the fallback
    };
    const Case cases[] = {
        {"smallest height wins", {kTimes, kFixed, kCourier}, {{kTimesSet, 17}, {kFixedSet, 13}, {kCourierSet, 15}},
         kFixedSet, {kTimesSet, kFixedSet, kCourierSet}},
        {"equal heights keep the earlier", {kCourier, kFixed}, {{kCourierSet, 13}, {kFixedSet, 13}}, kCourierSet,
         {kCourierSet, kFixedSet}},
        {"unbuildable patterns are passed over", {kFixed, kTimes}, {{kTimesSet, 17}}, kTimesSet, {kFixedSet, kTimesSet}},
        {"fewer than 13 dashes are skipped", {"fixed", "------------", "-------------", kTimes}, {{kTimesSet, 17}},
         kTimesSet, {"-------------*,*", kTimesSet}},
        {"a pattern is tried once", {kTimes, "-adobe-times-medium-r-normal--17-120-100-100-p-84-iso10646-1", kTimes},
         {}, std::nullopt, {kTimesSet}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        FakeServer server;
        server.fonts = c.fonts;
        server.heights = c.heights;
        EXPECT_EQ(ChooseDefaultFontSet(server), c.chosen);
        EXPECT_EQ(server.askedFor, kMaxCandidateFonts);
        std::vector<std::string> expected = {kToolkitFallbackFontSet};
        expected.insert(expected.end(), c.tried.begin(), c.tried.end());
        EXPECT_EQ(server.tried, expected);
    }

    // The toolkit's own fallback needs no choice: nothing is listed.
    FakeServer withFallback;
    withFallback.heights = {{kToolkitFallbackFontSet, 20}};
    EXPECT_EQ(ChooseDefaultFontSet(withFallback), std::nullopt);
    EXPECT_EQ(withFallback.askedFor, -1);
}

TEST(ChooseDefaultFontSet, LooksAtNoMoreThanTheLimit) {
    FakeServer server;
    for (int i = 0; i < kMaxCandidateFonts + 5; ++i) {
        server.fonts.push_back("-f-family" + std::to_string(i) + "-medium-r-normal--13-120-75-75-c-70-iso8859-1");
    }
    // Only a font past the limit could be built.
    server.heights = {{FontSetPatternFromFontName(server.fonts.back()), 1}};
    EXPECT_EQ(ChooseDefaultFontSet(server), std::nullopt);
    EXPECT_EQ(server.tried.size(), static_cast<std::size_t>(kMaxCandidateFonts) + 1);
}

}  // namespace
