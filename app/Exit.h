#pragma once

// The one way the process ends: from the tick or the start-up loop when the
// pipe has died, and from the X error handlers.

// Destroys the Xt application context if there is one, sleeps two seconds so
// the writer thread can still send what was queued, then exits with `status`.
// `reason` only documents the call site; it is never printed or sent. Does
// not return, unless a test has replaced the ending (below).
void ExitCleanup(int status, const char* reason);

// Replaces the two-second pause and the exit, so a test can observe an ending
// and go on; ExitCleanup then returns after calling it. Null restores the real
// ending. Tests only.
using ExitFunction = void (*)(int status, const char* reason);
void SetExitFunctionForTesting(ExitFunction ending);
