#include "ui/QuietModeDialog.h"

#include "app/ClientLink.h"
#include "text/LocalizedStrings.h"
#include "ui/DialogWindow.h"
#include "ui/KeyboardFocus.h"
#include "ui/XGlobals.h"

#include <X11/StringDefs.h>
#include <X11/Xaw/Command.h>
#include <X11/Xaw/Form.h>
#include <X11/Xaw/Label.h>

namespace {

DialogWindow window;

void OkPressed(Widget, XtPointer, XtPointer) {
    QuietModeDialog::Remove();
    QueueCommand(UICommandType::QuietModeClosed, 0, 0, 0);
}

void Build(Instant start, Instant end) {
    // Every text first: a text the locale cannot show fails before any widget exists.
    ControlString explanation = LabelText(ControlLiteral(LocalizedStrings::QuietModeExplanation(start, end)));
    ControlString title = ControlLiteral("Not Currently Available");
    ControlString ok = LabelText(ControlLiteral("OK"));

    window.Create(std::move(title));
    const Widget label = window.Add("staticlabel", labelWidgetClass,
                                    {{XtNborderWidth, 0},
                                     {XtNlabel, window.Keep(std::move(explanation))},
                                     {XtNjustify, XtJustifyLeft}});
    const Widget button = window.Add("ok", commandWidgetClass, {{XtNlabel, window.Keep(std::move(ok))},
                                                                {XtNfromVert, WidgetValue(label)}});
    CentreUnder(button, label);
    XtAddCallback(button, XtNcallback, OkPressed, nullptr);
    KeyboardFocus::Attach(window.Shell(), {{button}}, 0, {button, button});
    window.Present(nullptr);
}

}  // namespace

namespace QuietModeDialog {

void Show(Instant start, Instant end) {
    if (display == nullptr || window.Exists()) return;
    window.BuildOrEnd("QuietModeDialog", [&] { Build(start, end); });
}

void Remove() { window.Destroy(); }

bool IsShown() { return window.Exists(); }

Widget Shell() { return window.Shell(); }

}  // namespace QuietModeDialog
