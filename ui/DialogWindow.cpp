#include "ui/DialogWindow.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "app/ClientLink.h"
#include "app/Exit.h"
#include "app/Settings.h"
#include "base/unicode/Local8Bit.h"
#include "protocol/UIReports.h"
#include "ui/DialogLayout.h"
#include "ui/WidgetHelpers.h"
#include "ui/WindowManagerClose.h"
#include "ui/XGlobals.h"

#include <X11/Shell.h>
#include <X11/StringDefs.h>
#include <X11/Xaw/AsciiText.h>
#include <X11/Xaw/Form.h>
#include <X11/Xaw/Label.h>

namespace {

Arg MakeArg(const char* name, XtArgVal value) {
    Arg arg;
    XtSetArg(arg, const_cast<String>(name), value);
    return arg;
}

Widget Create(const char* name, WidgetClass widgetClass, Widget parent, std::vector<Arg> args) {
    args.push_back(MakeArg(XtNinternational, international ? True : False));
    return XtCreateManagedWidget(name, widgetClass, parent, args.data(), static_cast<Cardinal>(args.size()));
}

struct OuterSize {
    int left;
    int width;  // borders included
};

OuterSize Measure(Widget widget) {
    Dimension width = 0;
    Dimension border = 0;
    int left = 0;
    XtVaGetValues(widget, XtNwidth, &width, XtNborderWidth, &border, XtNhorizDistance, &left, nullptr);
    return {left, width + 2 * border};
}

// Counts the closings of the application context.
unsigned long currentGeneration = 1;

int DefaultDistance(Widget form) {
    int distance = 0;
    XtVaGetValues(form, XtNdefaultDistance, &distance, nullptr);
    return distance;
}

}  // namespace

void DialogWindow::Create(ControlString title) {
    Destroy();
    Arg args[] = {MakeArg(XtNtitle, Keep(LabelText(std::move(title)))), MakeArg(XtNmappedWhenManaged, False),
                 MakeArg(kOpenInputMethod, False)};
    generation_ = currentGeneration;
    shell_ = XtAppCreateShell(nullptr, nullptr, applicationShellWidgetClass, display, args, XtNumber(args));
    XtAddCallback(shell_, XtNdestroyCallback, Destroyed, this);
    form_ = ::Create("form", formWidgetClass, shell_, {});
}

Widget DialogWindow::Add(const char* name, WidgetClass widgetClass, std::initializer_list<Resource> resources) {
    std::vector<Arg> args;
    for (const Resource& resource : resources) args.push_back(MakeArg(resource.name, resource.value));
    const Widget made = ::Create(name, widgetClass, form_, std::move(args));
    if (XtIsSubclass(made, labelWidgetClass)) FitLabelToScreen(made);
    return made;
}

Widget DialogWindow::AddTextArea(const char* name, ControlString text, std::initializer_list<Resource> resources) {
    std::vector<Arg> args = {
        MakeArg(XtNtype, XawAsciiString),          MakeArg(XtNscrollVertical, XawtextScrollAlways),
        MakeArg(XtNwrap, XawtextWrapWord),         MakeArg(XtNdisplayCaret, False),
        MakeArg(XtNeditType, XawtextRead),         MakeArg(XtNstring, Keep(std::move(text))),
    };
    for (const Resource& resource : resources) args.push_back(MakeArg(resource.name, resource.value));
    return ::Create(name, asciiTextWidgetClass, form_, std::move(args));
}

XtArgVal DialogWindow::Keep(ControlString text) {
    texts_.push_back(std::move(text));
    return reinterpret_cast<XtArgVal>(texts_.back().get());
}

void DialogWindow::SetText(Widget widget, const char* resource, ControlString text) {
    XtVaSetValues(widget, resource, text.get(), nullptr);
    for (ReplacedText& earlier : replaced_) {
        if (earlier.widget == widget && std::strcmp(earlier.resource, resource) == 0) {
            earlier.text = std::move(text);
            return;
        }
    }
    replaced_.push_back({widget, resource, std::move(text)});
}

void DialogWindow::Present(Widget text, WindowRole role) {
    XtRealizeWidget(shell_);
    PlaceDialog(shell_, role == WindowRole::Message ? Placement::Cascaded : Placement::Centred);
    AnnounceDeleteWindow(shell_);
    MakeTextScrollable(text);
    IdentifyWindow(shell_, role);
    XtMapWidget(shell_);
}

bool DialogWindow::Exists() const noexcept {
    return shell_ != nullptr && generation_ == currentGeneration;
}

void DialogWindow::Destroy() {
    if (Exists()) {
        const Widget shell = shell_;
        shell_ = form_ = nullptr;
        XtRemoveCallback(shell, XtNdestroyCallback, Destroyed, this);
        XtDestroyWidget(shell);
    }
    shell_ = form_ = nullptr;
    texts_.clear();
    replaced_.clear();
}

void DialogWindow::Destroyed(Widget widget, XtPointer self, XtPointer) {
    DialogWindow* window = static_cast<DialogWindow*>(self);
    // The texts stay until the next Create or Destroy: the widgets being
    // destroyed may still look at them.
    if (window->shell_ == widget) window->shell_ = window->form_ = nullptr;
}

void ForgetDialogWindows() {
    ++currentGeneration;
}

ControlString ClientText(UStringRef<UTF8> text) {
    std::string local(UnixPlatform::MakeLocalNullTerminated(text).View());
    // A NUL would end the widget's text there and hide the rest.
    std::replace(local.begin(), local.end(), '\0', ' ');
    return ControlLiteral(AutoNullTerminated<char>(local));
}

ControlString LabelText(ControlString text) {
    const std::string line = OneLineLabel(text != nullptr ? text.get() : "");
    return ControlLiteral(AutoNullTerminated<char>(line));
}

void CentreUnder(Widget item, Widget span) {
    const OuterSize under = Measure(span);
    XtVaSetValues(item, XtNhorizDistance, CentredDistance(under.left, under.width, Measure(item).width), nullptr);
}

void SpaceUnder(Widget first, Widget second, Widget span) {
    const OuterSize under = Measure(span);
    const PairDistances places = SpacedPairDistances(under.left, under.width, Measure(first).width,
                                                     Measure(second).width, DefaultDistance(XtParent(span)));
    XtVaSetValues(first, XtNhorizDistance, places.first, nullptr);
    XtVaSetValues(second, XtNhorizDistance, places.second, nullptr);
}

void EndForUnbuildableDialog(const char* dialogName) {
    try {
        ClientUIErrorMessage error(ClientUIErrorMessage::DialogError, dialogName);
        SendErrorToClient(error);
    } catch (...) {
        // The report could not be made: end all the same.
    }
    ExitCleanup(0, "TranscodeError");
}

Widget ShellOf(Widget widget) {
    while (widget != nullptr && XtParent(widget) != nullptr) widget = XtParent(widget);
    return widget;
}
