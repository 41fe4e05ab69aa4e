#include "ui/ConfirmationDialog.h"

#include "actions/PendingActions.h"
#include "app/ClientLink.h"
#include "ui/DialogLayout.h"
#include "ui/DialogScale.h"
#include "ui/DialogWindow.h"
#include "ui/KeyboardFocus.h"
#include "ui/XGlobals.h"

#include <X11/StringDefs.h>
#include <X11/Xaw/AsciiText.h>
#include <X11/Xaw/Command.h>
#include <X11/Xaw/Form.h>
#include <X11/Xaw/Label.h>

namespace {

DialogWindow window;
// What the 100 pixels of the text hold in the shipped 14-pixel Helvetica.
constexpr int kConfirmationLines = 5;
unsigned long long shownId = 0;
EntryNumber shownEntry = 0;

void Answered(Widget, XtPointer accepted, XtPointer) {
    ConfirmationDialog::Hide();
    QueueCommand(UICommand(accepted != nullptr ? UICommandType::ConfirmAccepted : UICommandType::ConfirmDeclined,
                           shownId, 0, 0, shownEntry));
}

void Build(const ActionRequest& action) {
    // Every text first: a text the locale cannot show fails before any widget exists.
    ControlString actionTitle = LabelText(ClientText(action.title.Ref()));
    ControlString message = ClientText(action.preActionMessage ? action.preActionMessage->Ref() : UStringRef<UTF8>());
    ControlString title = ControlLiteral("Confirmation Required");
    ControlString sentence =
        LabelText(ControlLiteral("This action requires you to acknowledge the following confirmation message:"));
    ControlString cancelLabel = LabelText(ControlLiteral("Cancel"));
    ControlString okLabel = LabelText(ControlLiteral("OK"));

    window.Create(std::move(title));
    const Widget heading = window.Add("actiontitle", labelWidgetClass,
                                      {{XtNborderWidth, 0},
                                       {XtNlabel, window.Keep(std::move(actionTitle))},
                                       {XtNjustify, XtJustifyLeft}});
    const Widget caption = window.Add("staticlabel", labelWidgetClass,
                                      {{XtNborderWidth, 0},
                                       {XtNfromVert, WidgetValue(heading)},
                                       {XtNlabel, window.Keep(std::move(sentence))}});
    Dimension captionWidth = 0;
    XtVaGetValues(caption, XtNwidth, &captionWidth, nullptr);
    const Widget text = window.AddTextArea("actionconfirmation", std::move(message),
                                           {{XtNfromVert, WidgetValue(caption)},
                                            {XtNwidth, ConfirmationTextWidth(captionWidth, DialogScale())},
                                            {XtNheight, Scaled(100)}});
    FitTextToLines(text, kConfirmationLines);
    const Widget cancel = window.Add("cancel", commandWidgetClass, {{XtNlabel, window.Keep(std::move(cancelLabel))},
                                                                    {XtNfromVert, WidgetValue(text)}});
    const Widget ok = window.Add("ok", commandWidgetClass,
                                 {{XtNlabel, window.Keep(std::move(okLabel))}, {XtNfromVert, WidgetValue(text)}});
    SpaceUnder(cancel, ok, text);
    XtAddCallback(cancel, XtNcallback, Answered, nullptr);
    XtAddCallback(ok, XtNcallback, Answered, reinterpret_cast<XtPointer>(1));
    // Cancel first: Return alone declines, and OK takes a Tab on purpose.
    KeyboardFocus::Attach(window.Shell(), {{cancel}, {ok}}, 0, {cancel, nullptr});
    window.Present(text);
}

}  // namespace

namespace ConfirmationDialog {

void Show(unsigned long long actionId, EntryNumber entry) {
    if (display == nullptr || window.Exists()) return;
    const std::size_t position = FindEntry(entry);
    if (position == actions.size()) {
        // Nothing to confirm: declined, so the action dialog is enabled again
        // and a take-all in progress ends without taking anything.
        QueueCommand(UICommand(UICommandType::ConfirmDeclined, actionId, 0, 0, entry));
        return;
    }
    const ActionRequest* action = &actions[position];
    shownId = actionId;
    shownEntry = entry;
    window.BuildOrEnd("ConfirmationDialog", [&] { Build(*action); });
}

void Update() {}

void Hide() { window.Destroy(); }

bool IsShown() { return window.Exists(); }

Widget Shell() { return window.Shell(); }

}  // namespace ConfirmationDialog
