#pragma once

// The handlers through which X and the toolkit report failures. Each failure
// ends the process; none is retried. The X, X I/O and toolkit error handlers
// end it without closing the display (ExitCleanupFromErrorHandler), since
// they may run inside a call that is waiting for the server's reply.

#include <X11/Intrinsic.h>

// A protocol error: "XError: " and the server's text; exit status -1. The
// failure of a request made under ForgivingXErrors is passed over instead.
int X_ErrorHandler(Display* display, XErrorEvent* event);

// The connection is gone: a normal way to end, like the client closing the
// pipe; exit status 0.
int X_IOErrorHandler(Display* display);

// A toolkit error: "XtError: " and the message; exit status -1. The toolkit
// requires that it never returns (_X_NORETURN: a type the toolkit checks).
_X_NORETURN void Xt_ErrorHandler(String message);

// "noFont" ends the program: the client is told (error code 1, the warning's
// name and the toolkit's built-in message for it) and the process exits with
// 0 through ExitCleanup. Every other warning goes to the handler the toolkit had
// before, if any.
void WarningMsgHandler(String name, String type, String warningClass, String defaultMessage, String* params,
                       Cardinal* paramCount);
