#pragma once

// Asks a running program to show its action dialog again, the way a second
// launcher does: an X ClientMessage with the data "open" to its hidden window.

#include <chrono>
#include <string>

// Sends the request to every top-level window named "ZAMClientUIHiddenWindow"
// on `display` (empty: $DISPLAY), retrying while there is none yet (the
// program makes the window only after its initialisation) until `limit` has
// passed. Returns how many windows got it; sets `error` when the display
// cannot be opened.
int SendOpenRequest(const std::string& display, std::chrono::milliseconds limit, std::string& error);
