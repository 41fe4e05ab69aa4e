#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "protocol/ActionRequest.h"

// The pending actions in arrival order, as the action dialog lists them. Two
// entries may carry the same ID; nothing merges them, and each has its own
// entry number (ActionRequest::entry) so that what the user chose, confirmed
// or was shown can be told apart from a later entry with the same ID.
// Touched only on the main thread.
extern std::vector<ActionRequest> actions;

// Appends a copy of `request` under the next entry number and returns that
// number. Numbers start at 1 and only grow, so "every entry up to N" is
// exactly what was pending when N was the newest.
EntryNumber AppendAction(const ActionRequest& request);

// Empties the list, then appends each of `entries` in order as above.
void ReplaceActions(const std::vector<ActionRequest>& entries);

// The newest entry number given so far (0 before the first).
EntryNumber NewestEntryNumber();

// The position of the entry with this number, or actions.size() when it is
// no longer pending.
std::size_t FindEntry(EntryNumber entry);

// The position of the entry the action dialog lists for this ID (the latest
// one with it), or actions.size() when none is pending.
std::size_t FindShownEntry(unsigned long long id);

// Erases the first entry of `actions` with this ID; does nothing if none has
// it. The client's withdrawal of an ID.
void RemoveAction(unsigned long long id);
