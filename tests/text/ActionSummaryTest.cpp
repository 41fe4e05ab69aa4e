#include "text/ActionSummary.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <tuple>
#include <vector>

#include "base/time/Clock.h"

namespace {

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

enum Form { One, Selected, Pending };

TEST(ActionSummary, ChoosesTheSentence) {
    struct Case { const char* name; Form form; std::vector<Given> actions; const char* text; };
    const Case kCases[] = {
        {"no actions", Pending, {}, ""},
        {"one: restart wins", One, {{1, "rd", kNone}}, "This action will require a system restart."},
        {"several: shutdown wins, even within one action", Selected, {{1, "r", kNone}, {2, "rd", kNone}},
         "The selected actions will require a system shutdown when they are complete."},
        {"ForceRun without a deadline", One, {{1, "sf", kNone}}, "You should save your work before taking this action."},
        {"4:59 left", One, {{1, "", 299}}, "You must take this action now."},
        {"exactly five minutes", One, {{1, "", 300}}, "You must take this action within Now."},
        {"one hour", One, {{1, "", 3600}}, "You must take this action within 60 minutes."},
        {"none left", One, {{1, "f", 0}}, "This action will run automatically in 0 seconds."},
        {"any save", Pending, {{1, "", kNone}, {2, "s", kNone}}, "You should save your work before taking these actions."},
        {"the earliest deadline governs", Pending, {{1, "f", 7200}, {2, "", 60}},
         "There is at least one action you must take now."},
        {"equal deadlines: the lower ID's flag, off", Pending, {{1, "", 600}, {2, "f", 600}},
         "There is at least one action you must take within 10 minutes."},
        {"equal deadlines: the lower ID's flag, on", Pending, {{1, "f", 600}, {2, "", 600}},
         "At least one of these actions will run automatically in 10 minutes."},
        {"ForceRun without a deadline among several", Selected, {{1, "f", kNone}, {2, "", 7200}},
         "There is at least one selected action you must take within 2 hours."},
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
            c.form == One ? ActionSummary(MakeAction(c.actions.at(0))) : ActionSummary(ids, store, c.form == Pending);
        EXPECT_EQ(text.Str(), c.text);
    }
    EXPECT_THROW(ActionSummary({1, 2}, ActionRequestStore(), false), NoSuchActionRequestID);
}

}  // namespace
