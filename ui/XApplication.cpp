#include "ui/XApplication.h"

#include <clocale>

#include "app/Exit.h"
#include "app/Settings.h"
#include "ui/ClientUITimer.h"
#include "ui/DefaultFontSet.h"
#include "ui/DialogScale.h"
#include "ui/DialogPlacement.h"
#include "ui/DialogWindow.h"
#include "ui/ErrorHandlers.h"
#include "ui/KeyboardFocus.h"
#include "ui/LocaleCheck.h"
#include "ui/WindowManagerClose.h"
#include "ui/XGlobals.h"

Display* display = nullptr;
XtAppContext app_context = nullptr;
XtErrorMsgHandler defaultWarningMsgHandler = nullptr;

namespace {

constexpr char kApplicationClass[] = "XZAMClientUI";

// Bound to keys or buttons when a site wants them to do nothing at all.
void NothingAction(Widget, XEvent*, String*, Cardinal*) {}

// The global actions, sorted by name. No translation of the program binds
// them: they exist for the user's and the site's resource files.
XtActionsRec globalActions[] = {
    // Swallows the event.
    {const_cast<String>("Nothing"), NothingAction},
    // A window manager's WM_DELETE_WINDOW ends the program.
    {const_cast<String>("SystemMenuClose"), SystemMenuClose},
};

void InstallXErrorHandlers() {
    XSetErrorHandler(X_ErrorHandler);
    XSetIOErrorHandler(X_IOErrorHandler);
}

void CreateApplicationContext() {
    XtToolkitInitialize();
    app_context = XtCreateApplicationContext();
    defaultWarningMsgHandler = XtAppSetWarningMsgHandler(app_context, WarningMsgHandler);
}

void OpenDisplay(int argc, char** argv) {
    display = XtOpenDisplay(app_context, nullptr, nullptr, kApplicationClass, nullptr, 0, &argc, argv);
    if (display == nullptr) ExitCleanup(-1, "Error: failed XtOpenDisplay");
}

}  // namespace

int InitXApp(int argc, char** argv) {
    InstallXErrorHandlers();
    if (international) XtSetLanguageProc(nullptr, nullptr, nullptr);
    CreateApplicationContext();
    OpenDisplay(argc, argv);
    // Only now: opening the display ran the toolkit's locale procedure.
    if (international) DropTranslationsUnderUntranslatedLocale(std::setlocale(LC_CTYPE, nullptr));
    ConfigValidDefaultFontSet();
    ReadDialogScale(display);
    XtAppSetErrorHandler(app_context, Xt_ErrorHandler);
    XtAppAddActions(app_context, globalActions, XtNumber(globalActions));
    KeyboardFocus::RegisterActions(app_context);
    StartClientUITick();
    try {
        XtAppMainLoop(app_context);
    } catch (...) {
        // Outside every handler of the dispatch: the loop is over and the
        // program ends normally.
        return 0;
    }
    return 0;
}

void DestroyApplicationContext() {
    // Cleared first: closing the display can report the lost connection
    // again, and that report must not destroy the context a second time.
    XtAppContext context = app_context;
    ForgetDialogWindows();
    ForgetPlacedDialogs();
    app_context = nullptr;
    display = nullptr;
    if (context != nullptr) XtDestroyApplicationContext(context);
}
