#include "ui/WindowManagerClose.h"

#include "app/Exit.h"

#include <X11/Xatom.h>

void SystemMenuClose(Widget widget, XEvent* event, String*, Cardinal*) {
    if (widget == nullptr || event == nullptr) return;
    if (IsDeleteWindowMessage(XtDisplay(widget), *event)) ExitCleanup(0, "CLOSED");
}

bool IsDeleteWindowMessage(Display* display, const XEvent& event) {
    if (display == nullptr || event.type != ClientMessage || event.xclient.format != 32) return false;
    const Atom protocols = XInternAtom(display, "WM_PROTOCOLS", True);
    const Atom deleteWindow = XInternAtom(display, "WM_DELETE_WINDOW", True);
    return protocols != None && deleteWindow != None && event.xclient.message_type == protocols &&
           static_cast<Atom>(event.xclient.data.l[0]) == deleteWindow;
}

void AnnounceDeleteWindow(Widget shell) {
    if (shell == nullptr) return;
    XtRealizeWidget(shell);
    Atom deleteWindow = XInternAtom(XtDisplay(shell), "WM_DELETE_WINDOW", False);
    XSetWMProtocols(XtDisplay(shell), XtWindow(shell), &deleteWindow, 1);
}
