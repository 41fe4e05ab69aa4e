#pragma once

// The process-wide X state, made by InitXApp and kept until exit. Main thread
// only.

#include <X11/Intrinsic.h>

// The display connection; null until InitXApp has opened it.
extern Display* display;
// Null until InitXApp creates it, and again once DestroyApplicationContext ran.
extern XtAppContext app_context;
// The warning handler the toolkit had before ours, for the warnings we pass on.
extern XtErrorMsgHandler defaultWarningMsgHandler;
