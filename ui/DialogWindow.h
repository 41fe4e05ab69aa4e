#pragma once

// The shape the details, confirmation, message and quiet-mode dialogs share:
// an application shell with a Form, and a few Labels, Texts and Commands with
// fixed names under it, built when shown and destroyed when hidden. Each
// dialog file says only what is its own (its widgets, texts and callbacks).

#include <initializer_list>
#include <vector>

#include "base/unicode/UString.h"
#include "ui/ControlLiteral.h"
#include "ui/WindowIdentity.h"
#include "ui/DialogPlacement.h"

#include <X11/Intrinsic.h>

// A widget as a resource value ("fromVert").
inline XtArgVal WidgetValue(Widget widget) { return reinterpret_cast<XtArgVal>(widget); }

// One resource of a widget being made.
struct Resource {
    const char* name;
    XtArgVal value;
};

// One dialog's shell and every text handed to its widgets: the toolkit may
// keep the pointers, so the texts live exactly as long as the shell. Neither
// copied nor moved (the shell's destroy callback points at it). Should the
// toolkit destroy the shell itself (the application context closing), the
// window notices and counts as gone.
class DialogWindow {
public:
    DialogWindow() = default;
    ~DialogWindow() { Destroy(); }
    DialogWindow(const DialogWindow&) = delete;
    DialogWindow& operator=(const DialogWindow&) = delete;

    // Makes the shell, not yet mapped, and its "form"; destroys an earlier
    // shell first. The shell is an application shell without a name or class
    // of its own, so resources reach it under the program's.
    void Create(ControlString title);
    // Makes a managed child of the form; every child gets "international".
    // A Label or Command too wide for the screen is cut to fit
    // (FitLabelToScreen).
    Widget Add(const char* name, WidgetClass widgetClass, std::initializer_list<Resource> resources);
    // The text area the details, confirmation and message dialogs show their
    // text in: a read-only string, word-wrapped, always with a vertical
    // scroll bar, no caret, sensitive so that it scrolls by hand; `resources`
    // add the rest.
    Widget AddTextArea(const char* name, ControlString text, std::initializer_list<Resource> resources);
    // Keeps the text for the shell's life; the value to hand to the toolkit.
    XtArgVal Keep(ControlString text);
    // Sets a text resource of a widget that exists, freeing the text that the
    // previous SetText of the same resource handed over, so a dialog whose
    // texts are replaced again and again does not grow.
    void SetText(Widget widget, const char* resource, ControlString text);
    // Realizes the shell and places it (PlaceDialog: a message steps aside
    // from the last one, the others are centred), announces WM_DELETE_WINDOW,
    // lets the text area (if any) scroll by hand (MakeTextScrollable), tells
    // the window manager what the window is (IdentifyWindow), then maps it.
    void Present(Widget text, WindowRole role = WindowRole::Subordinate);
    // Destroys the shell, then frees the texts. Harmless when there is none.
    void Destroy();
    // Runs `build`; if it throws (in practice: a text the locale cannot show),
    // destroys what was made and ends the program for the dialog
    // `dialogName` (EndForUnbuildableDialog).
    template <class Build>
    void BuildOrEnd(const char* dialogName, Build build);

    Widget Shell() const noexcept { return Exists() ? shell_ : nullptr; }
    Widget Form() const noexcept { return Exists() ? form_ : nullptr; }
    bool Exists() const noexcept;

private:
    static void Destroyed(Widget widget, XtPointer self, XtPointer);

    Widget shell_ = nullptr;
    Widget form_ = nullptr;
    unsigned long generation_ = 0;  // of the application context the shell was made under
    struct ReplacedText {
        Widget widget;
        const char* resource;
        ControlString text;
    };

    std::vector<ControlString> texts_;
    std::vector<ReplacedText> replaced_;
};

// Every dialog window counts as gone from now on, without touching its
// widgets: the application context is being closed, and closing it does not
// destroy them. The texts are freed at each window's next Create or Destroy.
void ForgetDialogWindows();

// A client text (UTF-8) in the locale's encoding, as it is: never read as a
// format, so "{" and "}" show. A NUL shows as a blank, so the rest shows too. A character the locale cannot show throws
// UnixPlatform::WideToMultiByteConvertError.
ControlString ClientText(UStringRef<UTF8> text);

// A text made fit for a label or a window title (OneLineLabel).
ControlString LabelText(ControlString text);

// The horizontal distance of `item` that centres it under `span`, from sizes
// read back after creation.
void CentreUnder(Widget item, Widget span);
// The same for two buttons side by side, the Form's default distance apart.
void SpaceUnder(Widget first, Widget second, Widget span);

// A dialog that could not be built (in practice: a text the locale cannot
// show) ends the program: the client is told which one (error code 2, sent
// twice), then ExitCleanup(0, "TranscodeError").
void EndForUnbuildableDialog(const char* dialogName);

template <class Build>
void DialogWindow::BuildOrEnd(const char* dialogName, Build build) {
    try {
        build();
    } catch (...) {
        Destroy();
        EndForUnbuildableDialog(dialogName);
    }
}

// The outermost shell above a widget, e.g. of the button that was pressed.
Widget ShellOf(Widget widget);
