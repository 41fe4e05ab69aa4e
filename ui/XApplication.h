#pragma once

// The X side of the program. Free of X headers, so main can include it.

// Opens the display and runs the X loop with the one-second tick. In order:
// the X error handlers; the toolkit's locale procedure when `international`;
// the application context and the warning handler; the display (class
// "XZAMClientUI"; failure ends the process with -1); the check that drops the
// translations under an untranslated locale; a usable default font set; the
// Xt error handler; the global actions; the first time-out. Returns 0 only when
// an exception has ended the loop; otherwise the process ends in ExitCleanup.
int InitXApp(int argc, char** argv);

// Closes the display and destroys the application context if there is one;
// app_context and display are null afterwards. Harmless when neither exists.
void DestroyApplicationContext();
