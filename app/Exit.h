#pragma once

// The one way the process ends: from the tick or the start-up loop when the
// pipe has died, and from the X error handlers.

// Destroys the Xt application context if there is one, sleeps two seconds so
// the writer thread can still send what was queued, then exits with `status`.
// `reason` only documents the call site; it is never printed or sent. Does
// not return, unless a test has replaced the ending (below).
void ExitCleanup(int status, const char* reason);

// The same ending for the X, X I/O and toolkit error handlers, except that the
// application context is left alone. Those handlers can run inside a call that
// waits for the server's reply; closing the display there makes one more
// round trip, which the threaded Xlib never answers, and the process would
// hang instead of ending. The process ends right after, so nothing is lost.
void ExitCleanupFromErrorHandler(int status, const char* reason);

// Replaces the two-second pause and the exit, so a test can observe an ending
// and go on; ExitCleanup then returns after calling it. Null restores the real
// ending. Tests only.
using ExitFunction = void (*)(int status, const char* reason);
void SetExitFunctionForTesting(ExitFunction ending);
