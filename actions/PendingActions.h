#pragma once

#include <vector>

#include "protocol/ActionRequest.h"

// The pending actions in arrival order, as the action dialog lists them. Two
// entries may carry the same ID; nothing merges them. Touched only on the
// main thread.
extern std::vector<ActionRequest> actions;

// Erases the first entry of `actions` with this ID; does nothing if none has it.
void RemoveAction(unsigned long long id);
