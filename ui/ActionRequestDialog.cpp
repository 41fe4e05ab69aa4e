#include "ui/ActionRequestDialog.h"

#include <algorithm>
#include <initializer_list>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "actions/ActionRequestStore.h"
#include "app/ActionDialogModel.h"
#include "actions/PendingActions.h"
#include "app/ClientLink.h"
#include "app/Exit.h"
#include "app/Settings.h"
#include "base/unicode/Local8Bit.h"
#include "text/ActionSummary.h"
#include "text/FormattedValues.h"
#include "text/LocalizedStrings.h"
#include "text/UFormat.h"
#include "ui/ActionDialogGeometry.h"
#include "ui/Attention.h"
#include "ui/ControlLiteral.h"
#include "ui/DialogScale.h"
#include "ui/DialogPlacement.h"
#include "ui/KeyboardFocus.h"
#include "app/SnoozeChoices.h"
#include "ui/WidgetHelpers.h"
#include "ui/WindowManagerClose.h"
#include "ui/WindowIdentity.h"
#include "ui/XGlobals.h"

#include <X11/Shell.h>
#include <X11/Xutil.h>
#include <X11/StringDefs.h>
#include <X11/Xaw/AsciiText.h>
#include <X11/Xaw/Command.h>
#include <X11/Xaw/Form.h>
#include <X11/Xaw/Label.h>
#include <X11/IntrinsicP.h>
#include <X11/Xaw/ListP.h>
#include <X11/Xaw/Viewport.h>

namespace {

// Releasing the first button on the action list highlights the row (Notify)
// and then makes it the selection: the list has no callback of its own.
constexpr char kActionListTranslations[] = "<Btn1Up>: Notify() PostponeListSelect()\n";

// The lines the text boxes show above scale 1, as their pixel sizes hold them
// at scale 1 in the shipped fonts.
constexpr int kDescriptionLines = 4;
constexpr int kActionListRows = 5;
constexpr int kSnoozeListRows = 2;

// The strings a List shows. The widget keeps the array's pointer, so the array
// (NULL-terminated) and its strings live here until the list has a new one.
class ListItems {
public:
    void Add(ControlString text) {
        pointers_.back() = text.get();
        pointers_.push_back(nullptr);
        texts_.push_back(std::move(text));
    }
    // A row that is not an item of ours, below the last (see ChangeList).
    void PadWithBlankRow() {
        pointers_.back() = "";
        pointers_.push_back(nullptr);
    }
    // Our items, without a padding row.
    int Count() const { return static_cast<int>(texts_.size()); }
    const char** Array() { return pointers_.data(); }

private:
    std::vector<ControlString> texts_;
    std::vector<const char*> pointers_{nullptr};
};

struct Widgets {
    Widget shell = nullptr;
    Widget form = nullptr;
    Widget title = nullptr;        // "actiontitle": the status or the selected action's title
    Widget description = nullptr;  // "actiondesc"
    Widget viewport = nullptr;
    Widget list = nullptr;
    Widget takeAll = nullptr;
    Widget take = nullptr;
    Widget cancel = nullptr;
    Widget details = nullptr;
    Widget snoozeViewport = nullptr;
    Widget snoozeList = nullptr;
    Widget snoozeButton = nullptr;
};

// The dialog's module state; the widgets only while it is shown.
struct DialogState {
    Widgets w;
    bool enabled = false;
    // Set by Update, cleared by the refresh that pays it.
    bool refreshOwed = false;
    // The application context the idle refresh is registered in, if any.
    XtAppContext idleRefreshContext = nullptr;
    // The one the widgets were made in: closing it forgets them without
    // destroying them, so widgets of another are stale.
    XtAppContext widgetsContext = nullptr;

    // The rows, the chosen action (kept across hide and show) and snooze
    // entry, and the rules of the buttons.
    ActionDialogModel model;
    ListItems actionItems;  // parallel to model.Rows()
    ListItems snoozeItems;  // parallel to model.SnoozeList()

    // Every text set on a widget, by widget and resource: the toolkit may
    // keep the pointer.
    std::map<std::pair<Widget, std::string>, ControlString> texts;
};

DialogState dialog;

// ---- Small widget helpers ----

void SetText(Widget widget, const char* resource, ControlString text) {
    XtVaSetValues(widget, resource, text.get(), nullptr);
    dialog.texts[{widget, resource}] = std::move(text);
}

void SetLabel(Widget widget, ControlString text) { SetText(widget, XtNlabel, std::move(text)); }

void SetSensitive(Widget widget, bool sensitive) {
    if (widget != nullptr) XtSetSensitive(widget, sensitive ? True : False);
}

using Resources = std::initializer_list<std::pair<const char*, XtArgVal>>;

// A managed child with the given resources and `international`, as every
// widget of the program has it.
Widget Make(const char* name, WidgetClass widgetClass, Widget parent, Resources resources) {
    std::vector<Arg> args;
    for (const auto& [resource, value] : resources) {
        args.push_back(Arg{const_cast<String>(resource), value});
    }
    args.push_back(Arg{const_cast<String>(XtNinternational), static_cast<XtArgVal>(international)});
    return XtCreateManagedWidget(name, widgetClass, parent, args.data(), static_cast<Cardinal>(args.size()));
}

XtArgVal Value(const void* pointer) { return reinterpret_cast<XtArgVal>(pointer); }

Dimension WidthOf(Widget widget) {
    Dimension width = 0;
    XtVaGetValues(widget, XtNwidth, &width, nullptr);
    return width;
}

// The seven widgets a pending command must not be clicked twice through.
void SetInteractive(bool sensitive) {
    for (Widget widget : {dialog.w.takeAll, dialog.w.details, dialog.w.cancel, dialog.w.take, dialog.w.snoozeButton,
                          dialog.w.snoozeList, dialog.w.list}) {
        SetSensitive(widget, sensitive);
    }
    KeyboardFocus::Settle(dialog.w.shell);
}

// ---- Texts ----

ControlString Formatted(const char* key, UStringRef<UTF8> value) {
    const UStringRef<UTF8> text(key);
    return ControlLiteral(MakeLocalString(FormatPlusArguments(UFormat(text, text), value)));
}

ControlString ListHeader() {
    std::string header;
    for (const char* part : {"Title", "  --  ", "Deadline"}) header += ControlLiteral(part).get();
    return FunkyControlLiteral(header.c_str());
}

// The status line shown while no action is selected, by the listable count.
ControlString StatusText(int count) {
    if (dialog.model.SelectedRow() >= 0) return ControlLiteral("1 action selected");
    if (count == 0) return ControlLiteral("There are no pending actions.");
    if (count == 1) return ControlLiteral("There is 1 pending action.");
    return Formatted("There are {x} pending actions.", UnixPlatform::FormattedNumber(static_cast<unsigned>(count)));
}

// One row: the title on one line, then the deadline as local time.
ControlString RowText(const ActionRequest& action) {
    std::string row = OneLineTitle(action.title.Ref());
    if (const NullOr<Instant> deadline = action.Deadline()) {
        row += "  --  ";
        row += UnixPlatform::FormattedLocalTime(deadline.Get()).Str();
    }
    return ControlLiteral(UnixPlatform::MakeLocalNullTerminated(row));
}

// ---- Refresh ----

// Hands the items to the list and returns the size it must be given once it is
// managed (its parent asks it again then). The list sums its size in 16 bits,
// so a size past kLargestListExtent is cut to it here instead.
ListSize ChangeList(Widget list, ListItems& items) {
    const auto* part = &reinterpret_cast<ListWidget>(list)->list;
    ListSize size = OneColumnListSize(items.Count(), part->row_height, part->internal_height, 0, 0, 0);
    if (size.blankRows > 0) items.PadWithBlankRow();
    const int count = items.Count() + size.blankRows;
    XawListChange(list, items.Array(), count, 0, False);
    size = OneColumnListSize(count, part->row_height, part->internal_height, part->longest, part->internal_width,
                             part->column_space);
    if (size.fits) XawListChange(list, items.Array(), count, part->longest, True);
    return size;
}

void CutToSize(Widget list, const ListSize& size) {
    if (size.fits) return;
    XtVaSetValues(list, XtNwidth, static_cast<Dimension>(size.width), XtNheight, static_cast<Dimension>(size.height),
                  nullptr);
}

void HighlightSelection() {
    if (dialog.model.SelectedRow() < 0) return;
    XawListHighlight(dialog.w.list, dialog.model.SelectedRow());
    ScrollSelectedItemIntoView(dialog.w.viewport, dialog.w.list);
}

// The rows come from a fresh store: ascending IDs, one row per ID (its latest
// entry), deadlines as the store moved them. Untitled actions are not listed.
void RebuildActionList() {
    const ActionRequestStore store = dialog.model.Rebuild(actions, Instant::Now());
    ListItems items;
    for (const ActionRow& row : dialog.model.Rows()) items.Add(RowText(store.GetAction(row.id)));
    XtUnmanageChild(dialog.w.list);
    const ListSize size = ChangeList(dialog.w.list, items);
    XtManageChild(dialog.w.list);
    CutToSize(dialog.w.list, size);
    // Only now may the old strings go: the list no longer points at them.
    dialog.actionItems = std::move(items);
    HighlightSelection();
}

void RebuildSnoozeList() {
    ListItems items;
    for (const SnoozeEntry& entry : dialog.model.SnoozeList()) items.Add(ControlLiteral(entry.text));
    CutToSize(dialog.w.snoozeList, ChangeList(dialog.w.snoozeList, items));
    dialog.snoozeItems = std::move(items);
    if (dialog.model.SnoozeSelected() >= 0) {
        XawListHighlight(dialog.w.snoozeList, dialog.model.SnoozeSelected());
        ScrollSelectedItemIntoView(dialog.w.snoozeViewport, dialog.w.snoozeList);
    }
}

void RefreshEmpty() {
    const Widgets& w = dialog.w;
    SetLabel(w.snoozeButton, ControlLiteral("Close"));
    SetSensitive(w.snoozeButton, true);
    SetSensitive(w.snoozeList, false);
    SetLabel(w.cancel, ControlLiteral("Cancel Action"));
    SetSensitive(w.cancel, false);
    SetSensitive(w.details, false);
    XtSetMappedWhenManaged(w.details, False);
    SetSensitive(w.takeAll, false);
    SetLabel(w.take, ControlLiteral("Take Action"));
    SetSensitive(w.take, false);
    SetLabel(w.title, StatusText(dialog.actionItems.Count()));
    SetText(w.description, XtNstring, FunkyControlLiteral(""));
}

void RefreshTextsAndButtons() {
    const Widgets& w = dialog.w;
    const ActionDialogModel& model = dialog.model;
    if (model.NothingPending()) {
        RefreshEmpty();
        return;
    }
    SetLabel(w.snoozeButton, ControlLiteral("Snooze"));
    XtSetMappedWhenManaged(w.details, model.DetailsAvailable() ? True : False);

    const ActionRequest* selected = model.Selected();
    if (selected == nullptr) {
        SetLabel(w.take, ControlLiteral("Take Actions"));
        SetLabel(w.cancel, ControlLiteral("Cancel Actions"));
        SetLabel(w.title, StatusText(dialog.actionItems.Count()));
        ActionRequestStore store;
        store.UpdateActions(actions);
        std::set<unsigned long long> all;
        for (const auto& entry : store.Actions()) all.insert(entry.first);
        SetText(w.description, XtNstring,
                ControlLiteral(UnixPlatform::MakeLocalNullTerminated(ActionSummary(all, store, true))));
    } else {
        SetLabel(w.take, ControlLiteral("Take Action"));
        SetLabel(w.cancel, ControlLiteral("Cancel Action"));
        SetLabel(w.title, Formatted("{actionTitle}", OneLineTitle(selected->title.Ref())));
        const UStringRef<UTF8> key("{actionDescription}\n\n{actionSummary}");
        const AutoUString<UTF8> summary = ActionSummary(*selected);
        SetText(w.description, XtNstring,
                ControlLiteral(MakeLocalString(FormatPlusArguments(UFormat(key, key), selected->shortDescription,
                                                                   summary))));
    }
    // The snooze list first: an insensitive list takes no highlight.
    SetSensitive(w.snoozeList, true);
    RebuildSnoozeList();
    SetSensitive(w.takeAll, model.IsSensitive(ActionButton::TakeAll));
    SetSensitive(w.take, model.IsSensitive(ActionButton::Take));
    SetSensitive(w.details, model.IsSensitive(ActionButton::Details));
    SetSensitive(w.snoozeButton, model.IsSensitive(ActionButton::Snooze));
    SetSensitive(w.snoozeList, model.SnoozeAllowed());
    SetSensitive(w.cancel, model.IsSensitive(ActionButton::Cancel));
}

void Refresh() {
    dialog.refreshOwed = false;
    if (dialog.w.shell == nullptr || !dialog.enabled) return;
    RebuildActionList();
    RefreshTextsAndButtons();
    KeyboardFocus::Settle(dialog.w.shell);
}

// Pays a refresh nobody flushed once the loop has nothing else to do.
Boolean IdleRefresh(XtPointer) {
    dialog.idleRefreshContext = nullptr;
    ActionRequestDialog::FlushRefresh();
    return True;
}

// ---- Callbacks and the action ----

void DisableForCommand() {
    SetInteractive(false);
    dialog.enabled = false;
}

// Queues what the model says a press of `button` asks for; a command first
// disables the dialog, so it cannot be clicked twice before the answer.
template <ActionButton button>
void OnButton(Widget, XtPointer, XtPointer) {
    const std::optional<UICommand> command = dialog.model.CommandFor(button, Instant::Now());
    if (!command) return;
    DisableForCommand();
    QueueCommand(*command);
}

// "Snooze" hides the dialog and asks to be reminded; as "Close" (nothing
// pending) it only hides it, and never asks: an action arriving before the
// next tick must not be snoozed by a button that offered none.
void OnSnooze(Widget, XtPointer, XtPointer) {
    const std::optional<UICommand> command = dialog.model.CommandFor(ActionButton::Snooze, Instant::Now());
    if (!command && !dialog.model.NothingPending()) return;
    ActionRequestDialog::Hide();
    if (command) QueueCommand(*command);
}

void OnSnoozeSelect(Widget, XtPointer, XtPointer callData) {
    const auto* chosen = static_cast<const XawListReturnStruct*>(callData);
    if (chosen != nullptr) dialog.model.ChooseSnooze(chosen->list_index);
}

void ReportBuildFailure();

// The action list's selection ("PostponeListSelect", bound to <Btn1Up>). A
// refresh that fails here ends the program like a dialog that cannot be built.
void PostponeListSelect(Widget, XEvent*, String*, Cardinal*) {
    if (!dialog.enabled || dialog.w.list == nullptr) return;
    XawListReturnStruct* current = XawListShowCurrent(dialog.w.list);
    const int index = current != nullptr ? current->list_index : XAW_LIST_NONE;
    XtFree(reinterpret_cast<char*>(current));
    // An empty list still shows one blank row: only indices of our own rows count.
    dialog.model.SelectRow(index);
    try {
        if (dialog.model.SelectedRow() >= 0) {
            HighlightSelection();
        } else {
            XawListUnhighlight(dialog.w.list);
        }
        RefreshTextsAndButtons();
        KeyboardFocus::Settle(dialog.w.shell);
    } catch (...) {
        ReportBuildFailure();
    }
}

void NothingAtAll(Widget, XEvent*, String*, Cardinal*) {}

// Xt never frees an action table, so the two are added once, at the first
// build, not at every one.
void RegisterActionsOnce() {
    // Noted on the display (one per application context here), whose
    // context data goes when it closes.
    static const XContext registered = XUniqueContext();
    XPointer noted = nullptr;
    if (XFindContext(display, DefaultRootWindow(display), registered, &noted) == 0) return;
    static XtActionsRec dialogActions[] = {
        // Swallows the event; for the user's and the site's resource files.
        {const_cast<String>("Nothing"), NothingAtAll},
        // The action list's selection.
        {const_cast<String>("PostponeListSelect"), PostponeListSelect},
    };
    XtAppAddActions(app_context, dialogActions, XtNumber(dialogActions));
    XSaveContext(display, DefaultRootWindow(display), registered, reinterpret_cast<XPointer>(dialogActions));
}

// ---- Building ----

// The forced scroll bar takes its width beside the list, not out of it.
void WidenForScrollbar(Widget viewport) {
    const Widget vertical = XtNameToWidget(viewport, "vertical");
    if (vertical == nullptr) return;
    const Dimension width = static_cast<Dimension>(WidthOf(viewport) + WidthOf(vertical));
    XtUnmanageChild(viewport);
    XtVaSetValues(viewport, XtNwidth, width, nullptr);
    XtManageChild(viewport);
}

ButtonRowSizes ReadButtonRowSizes() {
    const Widgets& w = dialog.w;
    Dimension border = 0;
    int defaultDistance = 0;
    XtVaGetValues(w.description, XtNborderWidth, &border, nullptr);
    XtVaGetValues(w.form, XtNdefaultDistance, &defaultDistance, nullptr);
    return ButtonRowSizes{WidthOf(w.description), border,           defaultDistance,   WidthOf(w.takeAll),
                          WidthOf(w.take),        WidthOf(w.cancel), WidthOf(w.details), DialogScale()};
}

void Build() {
    // Every text first: one the locale cannot show fails before any widget exists.
    ControlString title = ControlLiteral(LocalizedStrings::ActionRequestTitle());
    ControlString takeAll = ControlLiteral(LocalizedStrings::TakeAllActions());
    ControlString details = ControlLiteral(LocalizedStrings::ActionHistoryTitle());
    ControlString cancel = ControlLiteral("Cancel Actions");
    ControlString take = ControlLiteral("Take Actions");
    ControlString header = ListHeader();
    ControlString snoozeCaption = ControlLiteral(LocalizedStrings::SnoozeCaption());
    ControlString snooze = ControlLiteral("Snooze");

    // The widgets these belonged to are gone; a new dialog starts without snooze entries.
    dialog.texts.clear();
    dialog.snoozeItems = ListItems();
    Widgets& w = dialog.w;
    Arg shellArgs[] = {{const_cast<String>(XtNtitle), Value(title.get())},
                       {const_cast<String>(XtNmappedWhenManaged), False},
                       {const_cast<String>(kOpenInputMethod), False}};
    w.shell = XtAppCreateShell(nullptr, nullptr, applicationShellWidgetClass, display, shellArgs, XtNumber(shellArgs));
    dialog.texts[{w.shell, XtNtitle}] = std::move(title);
    w.form = Make("form", formWidgetClass, w.shell, {});
    w.title = Make("actiontitle", labelWidgetClass, w.form,
                   {{XtNwidth, Scaled(500)}, {XtNborderWidth, 0}, {XtNjustify, XtJustifyLeft}});
    w.description = Make("actiondesc", asciiTextWidgetClass, w.form,
                         {{XtNtype, XawAsciiString},
                          {XtNwidth, Scaled(500)},
                          {XtNheight, Scaled(70)},
                          {XtNscrollVertical, XawtextScrollAlways},
                          {XtNwrap, XawtextWrapWord},
                          {XtNfromVert, Value(w.title)},
                          {XtNdisplayCaret, False},
                          {XtNeditType, XawtextRead}});
    const Widget listLabel = Make("actionListLabel", labelWidgetClass, w.form,
                                  {{XtNborderWidth, 0},
                                   {XtNfromVert, Value(w.description)},
                                   {XtNvertDistance, Scaled(10)},
                                   {XtNlabel, Value(header.get())}});
    dialog.texts[{listLabel, XtNlabel}] = std::move(header);
    w.viewport = Make("viewport", viewportWidgetClass, w.form,
                      {{XtNfromVert, Value(listLabel)},
                       {XtNheight, Scaled(100)},
                       {XtNwidth, Scaled(485)},
                       {XtNallowVert, True},
                       {XtNforceBars, True}});
    const Resources listResources = {{XtNdefaultColumns, 1}, {XtNforceColumns, True}, {XtNverticalList, True}};
    w.list = Make("", listWidgetClass, w.viewport, listResources);

    const auto button = [&](const char* name, ControlString& label) {
        const Widget made = Make(name, commandWidgetClass, w.form,
                                 {{XtNlabel, Value(label.get())}, {XtNfromVert, Value(w.viewport)}});
        dialog.texts[{made, XtNlabel}] = std::move(label);
        return made;
    };
    w.takeAll = button("takeAllActions", takeAll);
    w.take = button("takeActions", take);
    w.cancel = button("cancelAction", cancel);
    w.details = button("actionDetails", details);
    const Widget snoozeLabel = Make("snoozeLabel", labelWidgetClass, w.form,
                                    {{XtNlabel, Value(snoozeCaption.get())},
                                     {XtNborderWidth, 0},
                                     {XtNfromVert, Value(w.takeAll)}});
    dialog.texts[{snoozeLabel, XtNlabel}] = std::move(snoozeCaption);
    w.snoozeViewport = Make("snoozeViewport", viewportWidgetClass, w.form,
                            {{XtNheight, Scaled(40)},
                             {XtNwidth, Scaled(400)},
                             {XtNallowVert, True},
                             {XtNforceBars, True},
                             {XtNfromVert, Value(snoozeLabel)}});
    w.snoozeList = Make("", listWidgetClass, w.snoozeViewport, listResources);
    FitTextToLines(w.description, kDescriptionLines);
    FitViewportToRows(w.viewport, w.list, kActionListRows);
    FitViewportToRows(w.snoozeViewport, w.snoozeList, kSnoozeListRows);
    w.snoozeButton = Make("snoozeButton", commandWidgetClass, w.form,
                          {{XtNlabel, Value(snooze.get())}, {XtNfromVert, Value(snoozeLabel)}});
    dialog.texts[{w.snoozeButton, XtNlabel}] = std::move(snooze);

    const ButtonRowSizes sizes = ReadButtonRowSizes();
    const ButtonRowPlaces places = PlaceButtonRow(sizes);
    XtVaSetValues(w.take, XtNhorizDistance, places.take, nullptr);
    XtVaSetValues(w.cancel, XtNhorizDistance, places.cancel, nullptr);
    XtVaSetValues(w.details, XtNhorizDistance, places.details, nullptr);
    // The snooze button right-aligned under "takeActions", beside the snooze
    // viewport as it will be once widened for its scroll bar.
    int viewportDistance = 0;
    Dimension viewportBorder = 0;
    XtVaGetValues(w.snoozeViewport, XtNhorizDistance, &viewportDistance, XtNborderWidth, &viewportBorder, nullptr);
    const Widget snoozeBar = XtNameToWidget(w.snoozeViewport, "vertical");
    const int viewportRight = viewportDistance + WidthOf(w.snoozeViewport) +
                              (snoozeBar != nullptr ? WidthOf(snoozeBar) : 0) + 2 * viewportBorder;
    XtVaSetValues(w.snoozeButton, XtNhorizDistance, PlaceSnoozeButton(sizes, WidthOf(w.snoozeButton), viewportRight),
                  nullptr);
    XawFormDoLayout(w.form, True);

    RegisterActionsOnce();
    static const XtTranslations listTranslations = XtParseTranslationTable(kActionListTranslations);
    XtOverrideTranslations(w.list, listTranslations);
    XtAddCallback(w.takeAll, XtNcallback, OnButton<ActionButton::TakeAll>, nullptr);
    XtAddCallback(w.take, XtNcallback, OnButton<ActionButton::Take>, nullptr);
    XtAddCallback(w.cancel, XtNcallback, OnButton<ActionButton::Cancel>, nullptr);
    XtAddCallback(w.details, XtNcallback, OnButton<ActionButton::Details>, nullptr);
    XtAddCallback(w.snoozeButton, XtNcallback, OnSnooze, nullptr);
    XtAddCallback(w.snoozeList, XtNcallback, OnSnoozeSelect, nullptr);
    // Reading order; the list first, where Return takes nothing.
    KeyboardFocus::Attach(w.shell,
                          {{w.list, "PostponeListSelect"}, {w.takeAll}, {w.take}, {w.cancel}, {w.details},
                           {w.snoozeList}, {w.snoozeButton}},
                          0, {});

    XtRealizeWidget(w.shell);
    WidenForScrollbar(w.viewport);
    WidenForScrollbar(w.snoozeViewport);
    PlaceDialog(w.shell);
    AnnounceDeleteWindow(w.shell);
    dialog.widgetsContext = app_context;
    IdentifyWindow(w.shell, WindowRole::ActionDialog);
    ClearUrgencyOnTouch(w.shell);
    for (Widget viewport : {w.viewport, w.snoozeViewport}) {
        OverrideScrollbarTranslations(XtNameToWidget(viewport, "vertical"));
    }
    MakeTextScrollable(w.description);
    ScrollSelectedItemIntoView(w.viewport, w.list);
    ScrollSelectedItemIntoView(w.snoozeViewport, w.snoozeList);
    // Mapped by Show once the first refresh has filled it.
    // A new dialog is enabled, whatever state the last one was hidden in.
    dialog.enabled = true;
}

void ForgetWidgets() {
    dialog.w = Widgets{};
    dialog.refreshOwed = false;
}

// The client is told (twice, as every error report is sent) and the program ends.
void ReportBuildFailure() {
    if (dialog.w.shell != nullptr && app_context != nullptr) XtDestroyWidget(dialog.w.shell);
    ForgetWidgets();
    try {
        ClientUIErrorMessage error(ClientUIErrorMessage::DialogError, "ActionRequestDialog");
        SendErrorToClient(error);
    } catch (...) {
        // Ending matters more than the report.
    }
    ExitCleanup(0, "TranscodeError");
}

}  // namespace

namespace ActionRequestDialog {

void Show(bool, const TimeInterval& remindInterval, bool snoozable) {
    if (app_context == nullptr || display == nullptr || dialog.w.shell != nullptr) return;
    dialog.model.Open(remindInterval, snoozable);
    try {
        Build();
    } catch (...) {
        ReportBuildFailure();
        return;
    }
    // At once and before the window is mapped: the first drawing already
    // shows the actions, and a refresh that fails never shows a half-filled
    // window.
    Update();
    FlushRefresh();
    if (dialog.w.shell != nullptr) XtMapWidget(dialog.w.shell);
}

void Update() {
    if (app_context == nullptr || dialog.w.shell == nullptr || !dialog.enabled) return;
    dialog.refreshOwed = true;
    if (dialog.idleRefreshContext != app_context) {
        XtAppAddWorkProc(app_context, IdleRefresh, nullptr);
        dialog.idleRefreshContext = app_context;
    }
}

void FlushRefresh() {
    if (!dialog.refreshOwed) return;
    try {
        Refresh();
    } catch (...) {
        // In practice a client text the locale cannot show: the dialog
        // cannot show what it must, as if it could not be built.
        ReportBuildFailure();
    }
}

void Hide() {
    if (app_context == nullptr || dialog.w.shell == nullptr) return;
    const Widget shell = dialog.w.shell;
    ForgetWidgets();
    // The list strings stay until the next dialog replaces them: the toolkit
    // finishes destroying the widgets only after the current event.
    XtDestroyWidget(shell);
}

void Enable() {
    if (app_context == nullptr) return;
    SetInteractive(true);
    dialog.enabled = true;
    Update();
    FlushRefresh();
}

void Disable() {
    if (app_context == nullptr) return;
    struct DisableOnLeaving {
        ~DisableOnLeaving() { DisableForCommand(); }
    } disable;
    FlushRefresh();
}

bool IsShown() { return dialog.w.shell != nullptr; }

Widget Shell() {
    const Widget shell = dialog.w.shell;
    return app_context != nullptr && dialog.widgetsContext == app_context && shell != nullptr && XtIsRealized(shell)
               ? shell
               : nullptr;
}

bool IsEnabled() { return dialog.enabled; }

}  // namespace ActionRequestDialog
