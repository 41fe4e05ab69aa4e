#include "ui/ActionDetailsDialog.h"

#include "actions/PendingActions.h"
#include "app/ClientLink.h"
#include "ui/DialogScale.h"
#include "ui/DialogWindow.h"
#include "ui/KeyboardFocus.h"
#include "ui/XGlobals.h"

#include <X11/StringDefs.h>
#include <X11/Xaw/AsciiText.h>
#include <X11/Xaw/Command.h>
#include <X11/Xaw/Form.h>

namespace {

DialogWindow window;
// What the 100 pixels of the preview hold in the shipped 13-pixel fixed font.
constexpr int kPreviewLines = 7;

// The Preview of that pending entry; empty when there is none.
UStringRef<UTF8> PreviewOf(EntryNumber entry) {
    const std::size_t position = FindEntry(entry);
    if (position == actions.size() || !actions[position].preview) return UStringRef<UTF8>();
    return actions[position].preview->Ref();
}

void OkPressed(Widget, XtPointer, XtPointer) {
    ActionDetailsDialog::Hide();
    QueueCommand(UICommandType::DetailsClosed, 0, 0, 0);
}

void Build(EntryNumber entry) {
    // Every text first: a text the locale cannot show fails before any widget exists.
    ControlString preview = ClientText(PreviewOf(entry));
    ControlString title = ControlLiteral("Action Script Preview");
    ControlString ok = LabelText(ControlLiteral("OK"));

    window.Create(std::move(title));
    const Widget text = window.AddTextArea("actiondetails", std::move(preview),
                                           {{XtNwidth, Scaled(500)}, {XtNheight, Scaled(100)}});
    FitTextToLines(text, kPreviewLines);
    const Widget button = window.Add("ok", commandWidgetClass, {{XtNlabel, window.Keep(std::move(ok))},
                                                                {XtNfromVert, WidgetValue(text)}});
    CentreUnder(button, text);
    XtAddCallback(button, XtNcallback, OkPressed, nullptr);
    KeyboardFocus::Attach(window.Shell(), {{button}}, 0, {button, button});
    window.Present(text);
}

}  // namespace

namespace ActionDetailsDialog {

void Show(unsigned long long, EntryNumber entry) {
    if (display == nullptr || window.Exists()) return;
    window.BuildOrEnd("ActionDetailsDialog", [&] { Build(entry); });
}

void Update() {}

void Hide() { window.Destroy(); }

bool IsShown() { return window.Exists(); }

Widget Shell() { return window.Shell(); }

}  // namespace ActionDetailsDialog
