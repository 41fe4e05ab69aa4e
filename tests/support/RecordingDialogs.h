#pragma once

// The dispatch's view of the screen, recorded instead of shown: every call of
// app/DialogCalls.h appends one line to a transcript, e.g.
// "ShowActionRequestDialog(false,PT5M,true)". Reset() wires the recorder in.

#include <string>
#include <vector>

#include "base/Exceptions.h"

namespace RecordingDialogs {

// Returns every call so far, oldest first, and starts a new transcript.
std::vector<std::string> Take();
// Wires the recorder as the screen, empties the transcript and resets what
// IsActionRequestDialogShown answers (false).
void Reset();
// What IsActionRequestDialogShown() answers from now on.
void SetActionDialogShown(bool shown);
// The confirmation counts as shown from a ShowConfirmationRequestDialog call
// on; this closes it, as the user's answer does.
void CloseConfirmation();
// Calls of the function with this name (e.g. "ShowActionDetailsDialog") throw
// RecordedDialogFailure after being recorded; empty for none. Reset clears it.
void FailOn(const std::string& function);

}  // namespace RecordingDialogs

// What a dialog call throws when a test asked for a failure.
class RecordedDialogFailure : public DebuggableException {};
