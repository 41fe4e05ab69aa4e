#include "text/ActionSummary.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <string>
#include <vector>

#include "base/time/Clock.h"
#include "text/FormatBindings.h"
#include "text/FormatOverrides.h"

namespace {

const Instant kNow(1795348800LL * 1000000);  // 2026-11-22 12:00:00 UTC
constexpr long long kNone = LLONG_MIN;      // no deadline

// An action by its flags: 's' RequestSave, 'r' Restart, 'd' Shutdown, 'f' ForceRun.
struct Spec { unsigned long long id; const char* flags; long long secondsLeft; };

ActionRequest MakeAction(const Spec& spec) {
    ActionRequest action;
    action.id = spec.id;
    action.requestSave = std::strchr(spec.flags, 's') != nullptr;
    action.restart = std::strchr(spec.flags, 'r') != nullptr;
    action.shutdown = std::strchr(spec.flags, 'd') != nullptr;
    action.forceRun = std::strchr(spec.flags, 'f') != nullptr;
    if (spec.secondsLeft != kNone) {
        action.deadline = TimeObject(kNow + TimeInterval(spec.secondsLeft * 1000000), TimeZone(3600));
    }
    return action;
}

enum Form { One, Selected, Pending };

TEST(ActionSummary, ChoosesTheSentence) {
    struct Case { const char* name; Form form; std::vector<Spec> actions; const char* text; };
    const Case kCases[] = {
        {"nothing to say", One, {{1, "", kNone}}, ""},
        {"no actions", Pending, {}, ""},
        {"one: restart wins", One, {{1, "rd", kNone}}, "This action will require a system restart."},
        {"several: shutdown wins", Selected, {{1, "r", kNone}, {2, "d", kNone}},
         "The selected actions will require a system shutdown when they are complete."},
        {"several: even within one action", Pending, {{1, "rd", kNone}},
         "The pending actions will require a system shutdown when they are complete."},
        {"ForceRun without a deadline", One, {{1, "sf", kNone}}, "You should save your work before taking this action."},
        {"4:59 left", One, {{1, "", 299}}, "You must take this action now."},
        {"exactly five minutes", One, {{1, "", 300}}, "You must take this action within Now."},
        {"5:01 left", One, {{1, "", 301}}, "You must take this action within 5 minutes."},
        {"one hour", One, {{1, "", 3600}}, "You must take this action within 60 minutes."},
        {"countdown", One, {{1, "f", 90}}, "This action will run automatically in 1 minute, 30 seconds."},
        {"none left", One, {{1, "f", 0}}, "This action will run automatically in 0 seconds."},
        {"forced and overdue", One, {{1, "f", -10}}, "This action will run automatically in 0 seconds."},
        {"overdue", One, {{1, "sd", -10}},
         "You should save your work before taking this action, as it will require a system shutdown.  You must "
         "take this action now."},
        {"any save", Pending, {{1, "", kNone}, {2, "s", kNone}}, "You should save your work before taking these actions."},
        {"only the earliest deadline's ForceRun", Selected, {{1, "", 600}, {2, "f", 1200}},
         "There is at least one selected action you must take within 10 minutes."},
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
        std::vector<ActionRequest> actions;
        std::set<unsigned long long> ids;
        for (const Spec& spec : c.actions) {
            actions.push_back(MakeAction(spec));
            ids.insert(spec.id);
        }
        ActionRequestStore store;
        store.UpdateActions(actions);
        const AutoUString<UTF8> text =
            c.form == One ? ActionSummary(actions.at(0)) : ActionSummary(ids, store, c.form == Pending);
        EXPECT_EQ(text.Str(), c.text);
    }
    EXPECT_THROW(ActionSummary({1, 2}, ActionRequestStore(), false), NoSuchActionRequestID);
}

TEST(ActionSummary, BrokenTranslationThrows) {
    const ScopedClockOverride clock(kNow);
    const std::string bytes = "You must take this action now.\t{DeadlineText} now\n";
    const FormatOverrideSet broken(bytes);
    const FormatOverrideScope scope(broken, GlobalFormatOverrideContext());
    EXPECT_THROW(ActionSummary(MakeAction({1, "", 60})), UndefinedFormatVariable);
    EXPECT_EQ(ActionSummary(MakeAction({1, "", 600})).Str(), "You must take this action within 10 minutes.");
}

}  // namespace
