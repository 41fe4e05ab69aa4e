#include "ui/ErrorHandlers.h"

#include <cstdlib>
#include <string>

#include "app/ClientLink.h"
#include "app/Exit.h"
#include "protocol/UIReports.h"
#include "ui/ErrorTexts.h"
#include "ui/ForgivenXErrors.h"
#include "ui/XGlobals.h"

int X_ErrorHandler(Display* display, XErrorEvent* event) {
    // A hint the window manager misses is no reason to end.
    if (event != nullptr && IsForgivenXError(*event)) return 0;
    char text[kXErrorTextBuffer] = {};
    constexpr std::size_t prefix = sizeof kXErrorPrefix - 1;
    if (display != nullptr && event != nullptr) {
        XGetErrorText(display, event->error_code, text + prefix, static_cast<int>(sizeof text - prefix));
    }
    text[sizeof text - 1] = '\0';
    ExitCleanupFromErrorHandler(-1, XErrorText(text + prefix).c_str());
    return 0;
}

int X_IOErrorHandler(Display*) {
    ExitCleanupFromErrorHandler(0, "CLOSED");
    return 0;
}

void Xt_ErrorHandler(String message) {
    ExitCleanupFromErrorHandler(-1, XtErrorText(message).c_str());
    // Only a test's replacement of the ending comes back here, and the
    // toolkit must not get control back after an error.
    std::_Exit(-1);
}

void WarningMsgHandler(String name, String type, String warningClass, String defaultMessage, String* params,
                       Cardinal* paramCount) {
    if (!IsFatalWarning(name)) {
        if (defaultWarningMsgHandler != nullptr) {
            defaultWarningMsgHandler(name, type, warningClass, defaultMessage, params, paramCount);
        }
        return;
    }
    // The toolkit's own wording, not an error database's: the client reads the
    // same text on every machine, whatever database is installed there.
    const std::string text = FatalWarningText(name, defaultMessage != nullptr ? defaultMessage : "");
    try {
        ClientUIErrorMessage error(ClientUIErrorMessage::FontError, text);
        SendErrorToClient(error);
    } catch (...) {
        // A text the writer cannot encode must not keep the process alive
        // without fonts, nor unwind through the toolkit: end all the same.
    }
    ExitCleanup(0, text.c_str());
}
