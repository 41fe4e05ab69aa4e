#pragma once

// The once-a-second work of the program, without the X timer around it: the
// X side's timer callback re-arms itself and calls this on every run.
//
// In order: a dead pipe ends the process (ExitCleanup(0, "CLOSED")); client
// messages, then user commands, are handled; before initialisation nothing
// more. After it: the hidden window is made (once), the action dialog comes
// back when a postponement has run out, timed-out message dialogs close, and,
// outside quiet mode, forced actions whose deadline has passed are reported as
// taken while those within five minutes of it refresh the dialog's countdown.
void RunClientUITick();
