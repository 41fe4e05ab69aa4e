#pragma once

// The hidden window's one request: another process that finds the window by
// its name sends it a ClientMessage whose data begins with "open" to bring up
// the action dialog. The X event handler reads the event and asks this.

// True when the first four bytes are exactly "open"; anything after them is
// not looked at. `data` must hold at least four bytes (a ClientMessage's data
// always holds twenty).
bool IsOpenRequest(const char* data);

// Queues OpenDialog for the next tick when the data is an open request.
void HandleHiddenWindowMessage(const char* data);
