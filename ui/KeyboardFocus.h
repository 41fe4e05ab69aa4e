#pragma once

// The keyboard in every dialog. The dialog keeps a focus of its own on one
// of its controls, and every key pressed anywhere in it (over a control, a
// text area or the form between them, which all carry the keys) acts on
// that focus: Tab and Shift+Tab step through the controls that take input,
// the focused one marked by its border colour; the arrows, Home, End, Page
// Up and Page Down move a focused list's highlight and select; Return and
// Space press the focused button (Return the dialog's default one when the
// focus is on no button); Escape presses the dialog's way out. A control
// that stops taking input loses the focus to the next that takes it; with
// every control disabled, keys do nothing, as clicks do.

#include <vector>

#include <X11/Intrinsic.h>

namespace KeyboardFocus {

// One control in a dialog's focus order: a Command, or a List (marked by its
// viewport's border). A list's keyboard selection is announced as a click's
// is: through its callbacks, then through `selectAction` (an action name) if
// a click's binding runs one.
struct FocusStop {
    Widget widget = nullptr;
    const char* selectAction = nullptr;
};

// The buttons some keys press whatever has the focus, when they take input.
struct DialogKeys {
    Widget escape = nullptr;         // pressed by Escape
    Widget defaultButton = nullptr;  // pressed by Return or Space while the focus is on no button
};

// Adds the keyboard's actions and the lists' wheel action to the
// application context, once, before any widget that binds them exists.
void RegisterActions(XtAppContext context);

// Gives the dialog under `shell` (its Form named "form") its keys: `order`
// is the focus order, `initial` the index of the control focused first (the
// next one that takes input if it does not). The key and wheel bindings are
// added beside the widgets' own and the resource files' ones, never over
// them, so a site's "#override" keeps its word; only a text area's own
// bindings of these keys give way. The dialog forgets its focus with the
// shell.
void Attach(Widget shell, std::vector<FocusStop> order, int initial, DialogKeys keys);

// Moves the focus of the dialog under `shell` off a control that no longer
// takes input, to the next one that does; with none, the mark goes and the
// focus comes back (to it, or the next) once a control takes input again.
void Settle(Widget shell);

}  // namespace KeyboardFocus
