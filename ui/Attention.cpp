#include "ui/Attention.h"

#include "ui/ForgivenXErrors.h"
#include "ui/WindowManagerAtoms.h"

#include <X11/Shell.h>
#include <X11/StringDefs.h>

namespace {

// The EWMH source indication of a request made by an application.
constexpr long kSourceApplication = 1;

void AskToActivate(Widget shell) {
    Display* display = XtDisplay(shell);
    const Atom activeWindow = WindowManagerAtomsOf(display).activeWindow;
    if (activeWindow == None) return;
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = XtWindow(shell);
    event.xclient.message_type = activeWindow;
    event.xclient.format = 32;
    event.xclient.data.l[0] = kSourceApplication;
    event.xclient.data.l[1] = CurrentTime;  // no user event of ours led here
    // Without a window manager nobody listens on the root and the event is dropped.
    XSendEvent(display, RootWindowOfScreen(XtScreen(shell)), False,
               SubstructureRedirectMask | SubstructureNotifyMask, &event);
}

void ClearUrgency(Widget, XtPointer shell, XEvent* event, Boolean*) {
    if (event == nullptr || event->type == FocusOut) return;
    const Widget owner = static_cast<Widget>(shell);
    Boolean urgent = False;
    XtVaGetValues(owner, XtNurgency, &urgent, nullptr);
    if (urgent) XtVaSetValues(owner, XtNurgency, False, nullptr);
}

// Presses go to the innermost widget that takes them and do not reach the
// shell, so every widget of the tree is watched.
void WatchPresses(Widget widget, Widget shell) {
    if (!XtIsWidget(widget)) return;
    XtAddEventHandler(widget, ButtonPressMask | KeyPressMask, False, ClearUrgency, shell);
    if (!XtIsComposite(widget)) return;
    WidgetList children = nullptr;
    Cardinal count = 0;
    XtVaGetValues(widget, XtNchildren, &children, XtNnumChildren, &count, nullptr);
    for (Cardinal i = 0; i < count; ++i) WatchPresses(children[i], shell);
}

}  // namespace

void RaiseAndActivate(Widget shell) {
    if (shell == nullptr || !XtIsRealized(shell)) return;
    ForgivingXErrors forgiving(XtDisplay(shell));
    // Nothing waits for the window manager's answer: one that ignores both
    // requests, or withdraws the window instead, costs the tick nothing.
    XMapRaised(XtDisplay(shell), XtWindow(shell));
    AskToActivate(shell);
}

void MarkUrgent(Widget shell) {
    if (shell == nullptr) return;
    XtVaSetValues(shell, XtNurgency, True, nullptr);
}

void ClearUrgencyOnTouch(Widget shell) {
    if (shell == nullptr) return;
    WatchPresses(shell, shell);
    XtAddEventHandler(shell, FocusChangeMask, False, ClearUrgency, shell);
}
