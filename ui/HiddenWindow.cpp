#include "ui/HiddenWindow.h"

#include "app/OpenRequest.h"
#include "ui/XGlobals.h"

#include <X11/Shell.h>
#include <X11/StringDefs.h>

Widget zamHidden = nullptr;

namespace {

// Set until the window has been made; never set again, even if the toolkit
// were to destroy the shell.
bool hiddenWindowPending = true;

}  // namespace

void HiddenWindowEventHandler(Widget, XtPointer, XEvent* event, Boolean*) {
    if (event == nullptr || event->type != ClientMessage) return;
    HandleHiddenWindowMessage(event->xclient.data.b);
}

void CreateHiddenWindowOnce() {
    if (!hiddenWindowPending || display == nullptr) return;
    hiddenWindowPending = false;

    Arg args[3];
    Cardinal count = 0;
    XtSetArg(args[count], XtNwidth, 32), ++count;
    XtSetArg(args[count], XtNheight, 32), ++count;
    XtSetArg(args[count], XtNmappedWhenManaged, False), ++count;
    zamHidden = XtAppCreateShell(kHiddenWindowName, nullptr, applicationShellWidgetClass, display, args, count);
    XtRealizeWidget(zamHidden);
    // Non-maskable: ClientMessage events are delivered whatever the mask.
    XtInsertEventHandler(zamHidden, NoEventMask, True, HiddenWindowEventHandler, nullptr, XtListHead);
}
