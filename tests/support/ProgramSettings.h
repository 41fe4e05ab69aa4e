#pragma once

// Puts the program's process-wide settings back to how the program starts:
// the flags and m_ settings of app/Settings.h, no translations loaded and the
// "C" locale. Fixtures call it in SetUp and TearDown, so no test sees what an
// earlier one left. A test that replaces the ending in ExitCleanup puts that
// back itself (it needs the X side or its stand-in linked).
void ResetProgramSettings();
