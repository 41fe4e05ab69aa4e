#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <cstring>
#include <limits>
#include <tuple>
#include <vector>

#include "base/time/Clock.h"
#include "text/ActionSummary.h"
#include "text/FormattedDeadline.h"

namespace {

constexpr std::int64_t kSecond = 1000000;
constexpr std::int64_t kMinute = 60 * kSecond;
constexpr std::int64_t kHour = 60 * kMinute;
constexpr std::int64_t kDay = 24 * kHour;

TEST(FormattedDeadline, RoundsAtEachBoundary) {
    struct Case { std::int64_t remaining; bool forceRun; bool fromNow; const char* text; };
    const Case kCases[] = {
        // Passed deadlines: never wrapped. (The program never asks for the "from now" form.)
        {-1, false, false, "Overdue"},
        {-kDay, true, false, "0 seconds"},
        // The last five minutes: "Now", or a countdown for an action that runs by itself.
        {0, false, false, "Now"},
        {5 * kMinute, false, false, "Now"},
        {kSecond, true, false, "1 second"},
        {kMinute - 1, true, false, "59 seconds"},
        {kMinute, true, false, "1 minute, 0 seconds"},
        {kMinute + kSecond, true, false, "1 minute, 1 second"},
        {2 * kMinute + kSecond, true, false, "2 minutes, 1 second"},
        {5 * kMinute, true, false, "5 minutes, 0 seconds"},
        // Minutes are truncated and always plural.
        {5 * kMinute + 1, true, false, "5 minutes"},
        // Hours and days round to nearest, exactly half rounding down.
        {kHour + 1, false, false, "1 hour"},
        {kHour + 30 * kMinute, false, false, "1 hour"},
        {kHour + 30 * kMinute + 1, false, false, "2 hours"},
        {kDay, true, false, "24 hours"},
        {kDay + 1, false, false, "1 day"},
        {kDay + 12 * kHour, false, false, "1 day"},
        {kDay + 12 * kHour + 1, false, false, "2 days"},
        {std::numeric_limits<std::int64_t>::max(), false, false, "106751991 days"},
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(::testing::Message() << c.remaining << " forceRun " << c.forceRun << " fromNow " << c.fromNow);
        EXPECT_EQ(FormattedDeadline(TimeInterval(c.remaining), c.forceRun, c.fromNow).Str(), c.text);
    }
}

TEST(FormattedDeadline, CountsFromNow) {
    // The far ends of time saturate instead of wrapping round.
    const Instant first(std::numeric_limits<std::int64_t>::min()), last(std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(FormattedDeadline(last, first, false, false).Str(), "106751991 days");
    EXPECT_EQ(FormattedDeadline(first, last, true, false).Str(), "0 seconds");
}

const Instant kNow(1795348800LL * 1000000);  // 2026-11-22 12:00:00 UTC
constexpr long long kNone = LLONG_MIN;      // no deadline

// An action by its flags: 's' RequestSave, 'r' Restart, 'd' Shutdown, 'f' ForceRun.
struct Given { unsigned long long id; const char* flags; long long secondsLeft; };

ActionRequest MakeAction(const Given& given) {
    ActionRequest action;
    action.id = given.id;
    const auto has = [&](char flag) { return std::strchr(given.flags, flag) != nullptr; };
    std::tie(action.requestSave, action.restart, action.shutdown, action.forceRun) =
        std::make_tuple(has('s'), has('r'), has('d'), has('f'));
    if (given.secondsLeft != kNone) {
        action.deadline = TimeObject(kNow + TimeInterval(given.secondsLeft * 1000000), TimeZone(3600));
    }
    return action;
}

// The program words a summary for one action or for all that are pending.
enum Form { One, Pending };

TEST(ActionSummary, ChoosesTheSentence) {
    struct Case { const char* name; Form form; std::vector<Given> actions; const char* text; };
    const Case kCases[] = {
        {"no actions", Pending, {}, ""},
        {"one: restart wins", One, {{1, "rd", kNone}}, "This action will require a system restart."},
        {"several: shutdown wins, even within one action", Pending, {{1, "r", kNone}, {2, "rd", kNone}},
         "The pending actions will require a system shutdown when they are complete."},
        {"ForceRun without a deadline", One, {{1, "sf", kNone}}, "You should save your work before taking this action."},
        {"4:59 left", One, {{1, "", 299}}, "You must take this action now."},
        {"exactly five minutes", One, {{1, "", 300}}, "You must take this action within Now."},
        {"none left", One, {{1, "f", 0}}, "This action will run automatically in 0 seconds."},
        {"any save", Pending, {{1, "", kNone}, {2, "s", kNone}}, "You should save your work before taking these actions."},
        // Each flag counts from whichever action carries it, first or last.
        {"the first one's shutdown", Pending, {{1, "d", kNone}, {2, "", kNone}},
         "The pending actions will require a system shutdown when they are complete."},
        {"the first one's restart", Pending, {{1, "r", kNone}, {2, "", kNone}},
         "The pending actions will require a system restart when they are complete."},
        {"the first one's save", Pending, {{1, "s", kNone}, {2, "", kNone}},
         "You should save your work before taking these actions."},
        {"save and restart from two", Pending, {{1, "s", kNone}, {2, "r", kNone}},
         "You should save your work before taking these actions, as they will require a system restart when they are "
         "complete."},
        {"the earliest deadline governs", Pending, {{1, "f", 7200}, {2, "", 60}},
         "There is at least one action you must take now."},
        {"equal deadlines: the lower ID's flag, off", Pending, {{1, "", 600}, {2, "f", 600}},
         "There is at least one action you must take within 10 minutes."},
        {"equal deadlines: the lower ID's flag, on", Pending, {{1, "f", 600}, {2, "", 600}},
         "At least one of these actions will run automatically in 10 minutes."},
        {"ForceRun without a deadline among several", Pending, {{1, "f", kNone}, {2, "", 7200}},
         "There is at least one action you must take within 2 hours."},
    };
    const ScopedClockOverride clock(kNow);
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.name);
        ActionRequestStore store;
        std::set<unsigned long long> ids;
        for (const Given& given : c.actions) {
            store.UpdateActions({MakeAction(given)});
            ids.insert(given.id);
        }
        const auto text =
            c.form == One ? ActionSummary(MakeAction(c.actions.at(0))) : ActionSummary(ids, store, true);
        EXPECT_EQ(text.Str(), c.text);
    }
    EXPECT_THROW(ActionSummary({1, 2}, ActionRequestStore(), false), NoSuchActionRequestID);
}

}  // namespace
