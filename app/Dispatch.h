#pragma once

// The dispatch in both directions: client documents become changes of the
// pending actions and dialog calls; user commands queued by the dialogs become
// changes of the pending actions and messages to the client. Main thread only.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/Exceptions.h"
#include "base/time/Instant.h"
#include "protocol/ActionRequest.h"

// A non-empty client message that yields no root element. Thrown inside the
// batch, so the rest of the batch is dropped like after any malformed message.
class NoRootElement : public DebuggableException {};

// A take-all sequence waits for a confirmation. It covers the entries that
// were pending when Take All Actions was pressed (by entry, so entries that
// arrive or leave meanwhile change nothing of what the user agreed to); the
// walk goes on from `takeAllCursor`, an index into those entries.
extern bool takeAllPending;
extern std::size_t takeAllCursor;

// Handles the held-back messages if there are any, else everything readQ
// holds. An exception drops the rest of the batch; an applied
// InitializationInfo holds back the rest of its batch for the next call.
void ProcessMessagesFromClient();

// Carries out every queued user command in order; an exception drops only the
// command that raised it.
void ProcessMessagesFromUI();

// Sends ActionTaken for the action at `position`, erases it and refreshes the
// action dialog.
void ReportActionTaken(std::size_t position, bool isCancel);

// Sends ActionTaken for every pending entry among `entries`, in list order,
// erases them, refreshes the action dialog and enables it unless a
// confirmation, the details or the quiet notice holds it.
void ReportAllActionsTaken(const std::vector<EntryNumber>& entries);

// Shows the action dialog with the current settings unless it is shown; one
// that comes up while a confirmation, the details or the quiet notice is
// open comes up disabled, as the one before it was.
void ShowActionDialog();

// Forgets any take-all under way and the confirmation it waits for; for a
// fresh start in tests.
void ForgetTakeAll();

// Holds the action dialog back until `until` and tells the client when.
void PostponeUntil(Instant until);

// What a Snooze command asks for. `minutes` is the chosen entry, negative for
// the entries counted back from the earliest deadline, and `seconds` the whole
// seconds from now until that deadline.
struct SnoozeChoice {
    TimeInterval delay;     // from now until the dialog returns
    TimeInterval interval;  // remembered and sent as the snooze length
};

// Positive minutes: that many minutes, both. Zero: the seconds, both.
// Negative: the dialog returns |minutes| before the deadline (delay minutes
// plus seconds), and the interval stays negative, so the snooze list
// preselects the same deadline entry next time.
SnoozeChoice ChooseSnooze(std::int32_t minutes, std::uint32_t seconds);
