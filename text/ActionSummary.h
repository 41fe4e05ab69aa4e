#pragma once

// The sentence under the action list that says what taking the actions means:
// whether to save work first, whether a restart or shutdown follows, and how
// much time is left. It is picked from a fixed grid of translatable texts.

#include <set>

#include "actions/ActionRequestStore.h"
#include "base/unicode/UString.h"
#include "protocol/ActionRequest.h"

// One action. A restart wins over a shutdown when both are set.
AutoUString<UTF8> ActionSummary(const ActionRequest& action);

// The actions with these IDs, each fetched from the store (an unknown ID
// throws the store's error). A shutdown wins over a restart here, the opposite
// of the one-action summary; both are kept as they have always been. The
// earliest deadline governs, the lowest ID among equals, and only its action's
// ForceRun makes the sentence say the actions run by themselves. `wholeList`
// picks the "these actions" wording over "the selected actions".
AutoUString<UTF8> ActionSummary(const std::set<unsigned long long>& ids, const ActionRequestStore& store,
                                bool wholeList);
