#pragma once

// Message dialogs: one per message ID, each showing a title and a text from
// the client, kept in the order they were made. A message may close by
// itself after its time-out, by the client's RemoveRequest, or by the user's
// "dismiss"; none of these tells the client anything.

#include <cstddef>

#include "base/time/Instant.h"

#include <X11/Intrinsic.h>

struct MessageRequest;

namespace MessageDialog {

// Shows the request. An open dialog with its ID is reused: its title and text
// are replaced in place and its time-out starts again from `now` (no Timeout:
// it no longer expires; a Timeout of zero or less: it expires at the next
// check). Otherwise a new dialog is made and kept last. A completion message
// reads "Vorkan notification:" / "Action "{actionTitle}" has completed." with
// the request's Title; any other shows the request's Title and Message as
// they are. Does nothing before the display is open. A message whose texts
// the locale cannot show, whether new or reused, ends the program (the client
// is told "MessageDialog").
void Show(const MessageRequest& request, Instant now);

// Closes the dialog with this ID; an unknown ID is ignored.
void Remove(unsigned long long id);

// Closes, in list order, every dialog whose expiry is at or before `now`.
void RemoveTimedOut(Instant now);

// How many are open, and the shell of the one with this ID (null if none).
std::size_t Count();
Widget Shell(unsigned long long id);

}  // namespace MessageDialog
