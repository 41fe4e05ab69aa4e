#include "ui/KeyboardFocus.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>

#include "ui/DialogWindow.h"
#include "ui/FocusSteps.h"

#include <X11/IntrinsicP.h>
#include <X11/Shell.h>
#include <X11/StringDefs.h>
#include <X11/Xaw/Command.h>
#include <X11/Xaw/ListP.h>
#include <X11/Xaw/Text.h>
#include <X11/Xaw/Viewport.h>

namespace KeyboardFocus {
namespace {

// Bound on each control of a dialog's focus order. Tab says "without
// Shift": unqualified, it would match Shift+Tab too. The keypad's Enter is
// Return's twin.
constexpr char kControlKeys[] =
    "Shift<Key>Tab: FocusPrevious()\n"
    "~Shift<Key>Tab: FocusNext()\n"
    "<Key>Return: PressFocused()\n"
    "<Key>KP_Enter: PressFocused()\n"
    "<Key>space: PressFocused()\n"
    "<Key>Escape: PressEscape()\n"
    "<Key>Up: MoveHighlight(up)\n"
    "<Key>Down: MoveHighlight(down)\n"
    "<Key>Home: MoveHighlight(home)\n"
    "<Key>End: MoveHighlight(end)\n"
    "<Key>Prior: MoveHighlight(pageUp)\n"
    "<Key>Next: MoveHighlight(pageDown)\n";

// Bound on each list: a notch of the wheel scrolls three rows.
constexpr char kListWheel[] =
    "<Btn4Down>: ScrollList(up)\n"
    "<Btn5Down>: ScrollList(down)\n";
constexpr int kWheelRows = 3;

// The focus mark: a blue border, apart from the black of the toolkit's
// default borders and the grey of the shipped look.
constexpr char kFocusColour[] = "#2A62C9";

struct FocusRing {
    Widget shell = nullptr;
    std::vector<FocusStop> order;
    DialogKeys keys;
    int focused = -1;  // kept while nothing takes input, so the focus comes back there
    Widget marked = nullptr;
    Pixel markedBorder = 0;  // the marked widget's own border colour
};

// One per shown dialog; a handful at most.
std::vector<std::unique_ptr<FocusRing>> rings;

FocusRing* RingOf(Widget widget) {
    const Widget shell = ShellOf(widget);
    for (const auto& ring : rings) {
        if (ring->shell == shell) return ring.get();
    }
    return nullptr;
}

void Forget(Widget shell, XtPointer, XtPointer) {
    rings.erase(std::remove_if(rings.begin(), rings.end(), [shell](const auto& ring) { return ring->shell == shell; }),
                rings.end());
}

bool IsList(Widget widget) { return widget != nullptr && XtIsSubclass(widget, listWidgetClass); }

bool IsButton(Widget widget) { return widget != nullptr && XtIsSubclass(widget, commandWidgetClass); }

// A control takes input while it is sensitive and shown: the details button
// of an action without a preview is kept but never mapped.
bool TakesInput(Widget control) { return XtIsSensitive(control) == True && control->core.mapped_when_managed; }

std::vector<bool> Sensitivity(const FocusRing& ring) {
    std::vector<bool> sensitive;
    for (const FocusStop& stop : ring.order) sensitive.push_back(TakesInput(stop.widget));
    return sensitive;
}

Pixel FocusPixel(Widget widget) {
    // Allocated once per display and kept while it is open: every dialog
    // marks its focus with it.
    static Display* allocatedOn = nullptr;
    static Pixel pixel = 0;
    if (allocatedOn != XtDisplay(widget)) {
        Colormap colormap = 0;
        XtVaGetValues(widget, XtNcolormap, &colormap, nullptr);
        XColor shown{}, exact{};
        pixel = XAllocNamedColor(XtDisplay(widget), colormap, kFocusColour, &shown, &exact) != 0
                    ? shown.pixel
                    : BlackPixelOfScreen(XtScreen(widget));
        allocatedOn = XtDisplay(widget);
    }
    return pixel;
}

void Unmark(FocusRing& ring) {
    if (ring.marked != nullptr) XtVaSetValues(ring.marked, XtNborderColor, ring.markedBorder, nullptr);
    ring.marked = nullptr;
}

// Focuses control `index` and marks it; a list by its viewport, whose border
// is the one that shows.
void Focus(FocusRing& ring, int index) {
    const Widget control = ring.order[static_cast<std::size_t>(index)].widget;
    const Widget mark = IsList(control) ? XtParent(control) : control;
    ring.focused = index;
    XtSetKeyboardFocus(ring.shell, control);
    if (ring.marked == mark) return;
    Unmark(ring);
    XtVaGetValues(mark, XtNborderColor, &ring.markedBorder, nullptr);
    XtVaSetValues(mark, XtNborderColor, FocusPixel(mark), nullptr);
    ring.marked = mark;
}

void SettleRing(FocusRing& ring) {
    const int settled = SettledFocus(Sensitivity(ring), ring.focused);
    if (settled < 0) {
        Unmark(ring);
    } else {
        Focus(ring, settled);
    }
}

// The focused control while it takes input, else nothing.
Widget FocusedControl(const FocusRing& ring) {
    if (ring.focused < 0 || ring.focused >= static_cast<int>(ring.order.size())) return nullptr;
    const Widget control = ring.order[static_cast<std::size_t>(ring.focused)].widget;
    return TakesInput(control) ? control : nullptr;
}

// A press as a click's: the button's callbacks, only while it takes input.
void Press(Widget button) {
    if (IsButton(button) && TakesInput(button)) XtCallCallbacks(button, XtNcallback, nullptr);
}

// The rows of a list that are items: the blank rows the action dialog pads
// an empty or awkwardly sized list with are no choice.
int ItemCount(Widget list) {
    String* items = nullptr;
    int count = 0;
    XtVaGetValues(list, XtNlist, &items, XtNnumberStrings, &count, nullptr);
    while (items != nullptr && count > 0 && (items[count - 1] == nullptr || items[count - 1][0] == '\0')) --count;
    return count;
}

int RowHeight(Widget list) { return std::max<int>(reinterpret_cast<ListWidget>(list)->list.row_height, 1); }

int CurrentRow(Widget list) {
    XawListReturnStruct* current = XawListShowCurrent(list);
    const int row = current != nullptr ? current->list_index : XAW_LIST_NONE;
    XtFree(reinterpret_cast<char*>(current));
    return row;
}

// Moves the list's viewport the least that shows all of `row`: a row in
// view stays where it is, as under a click.
void ScrollRowIntoView(Widget list, int row) {
    const auto& part = reinterpret_cast<ListWidget>(list)->list;
    Dimension shown = 0;
    XtVaGetValues(XtParent(list), XtNheight, &shown, nullptr);
    const int rowTop = part.internal_height + row * RowHeight(list);
    const int top = -list->core.y;
    int newTop = top;
    if (rowTop < top) newTop = rowTop;
    if (rowTop + RowHeight(list) > top + shown) newTop = rowTop + RowHeight(list) - shown;
    if (newTop != top) XawViewportSetCoordinates(XtParent(list), 0, static_cast<Position>(std::max(newTop, 0)));
}

// Highlights `row` and announces it as a click on it would.
void SelectRow(const FocusStop& stop, int row, XEvent* event) {
    const Widget list = stop.widget;
    XawListHighlight(list, row);
    String* items = nullptr;
    XtVaGetValues(list, XtNlist, &items, nullptr);
    XawListReturnStruct chosen{items != nullptr ? items[row] : nullptr, row};
    XtCallCallbacks(list, XtNcallback, &chosen);
    if (stop.selectAction != nullptr) {
        XtCallActionProc(list, const_cast<String>(stop.selectAction), event, nullptr, 0);
    } else {
        ScrollRowIntoView(list, row);
    }
}

// ---- Actions ----

void Step(Widget widget, int direction) {
    FocusRing* ring = RingOf(widget);
    if (ring == nullptr) return;
    const int next = NextSensitive(Sensitivity(*ring), ring->focused, direction);
    if (next >= 0) Focus(*ring, next);
}

void FocusNextAction(Widget widget, XEvent*, String*, Cardinal*) { Step(widget, 1); }

void FocusPreviousAction(Widget widget, XEvent*, String*, Cardinal*) { Step(widget, -1); }

// The text area's own action for a key that moves a list: a read-only
// text scrolls by it (its caret is never shown).
const char* TextScrollFor(ListStep step) {
    switch (step) {
        case ListStep::Up: return "scroll-one-line-down";
        case ListStep::Down: return "scroll-one-line-up";
        case ListStep::PageUp: return "previous-page";
        case ListStep::PageDown: return "next-page";
        case ListStep::Home: return "beginning-of-file";
        case ListStep::End: return "end-of-file";
    }
    return nullptr;
}

void MoveHighlightAction(Widget widget, XEvent* event, String* params, Cardinal* count) {
    FocusRing* ring = RingOf(widget);
    const std::optional<ListStep> step = *count == 1 ? ListStepNamed(params[0]) : std::nullopt;
    if (ring == nullptr || !step) return;
    const Widget list = FocusedControl(*ring);
    if (!IsList(list)) {
        // No list has the focus: over a text area the keys read the text.
        if (XtIsSubclass(widget, textWidgetClass) && XtIsSensitive(widget)) {
            XtCallActionProc(widget, const_cast<String>(TextScrollFor(*step)), event, nullptr, 0);
        }
        return;
    }
    Dimension shown = 0;
    XtVaGetValues(XtParent(list), XtNheight, &shown, nullptr);
    const int row = SteppedRow(CurrentRow(list), ItemCount(list), *step, shown / RowHeight(list));
    if (row >= 0) SelectRow(ring->order[static_cast<std::size_t>(ring->focused)], row, event);
}

void PressEscapeAction(Widget widget, XEvent*, String*, Cardinal*) {
    if (const FocusRing* ring = RingOf(widget)) Press(ring->keys.escape);
}

void PressFocusedAction(Widget widget, XEvent*, String*, Cardinal*) {
    const FocusRing* ring = RingOf(widget);
    if (ring == nullptr) return;
    const Widget focused = FocusedControl(*ring);
    Press(IsButton(focused) ? focused : ring->keys.defaultButton);
}

// The wheel over a list moves its viewport; the highlight stays.
void ScrollListAction(Widget list, XEvent*, String* params, Cardinal* count) {
    if (!IsList(list) || *count != 1) return;
    const int rows = std::strcmp(params[0], "up") == 0 ? -kWheelRows : kWheelRows;
    const int top = -list->core.y + rows * RowHeight(list);
    XawViewportSetCoordinates(XtParent(list), 0, static_cast<Position>(std::max(top, 0)));
}

// A text area takes the keys pressed over it for itself, whatever the
// shell's keyboard focus says; its own bindings of the dialog's keys (a
// read-only text's caret moves, never shown) give way to the dialog's.
void OverrideTextKeys(Widget form, XtTranslations keys) {
    if (form == nullptr) return;
    WidgetList children = nullptr;
    Cardinal count = 0;
    XtVaGetValues(form, XtNchildren, &children, XtNnumChildren, &count, nullptr);
    for (Cardinal i = 0; i < count; ++i) {
        if (XtIsSubclass(children[i], textWidgetClass)) XtOverrideTranslations(children[i], keys);
    }
}

// Sorted by name.
XtActionsRec keyboardActions[] = {
    // Tab: the next control that takes input.
    {const_cast<String>("FocusNext"), FocusNextAction},
    // Shift+Tab: the one before.
    {const_cast<String>("FocusPrevious"), FocusPreviousAction},
    // The arrows, Home, End, Page Up and Page Down on a focused list.
    {const_cast<String>("MoveHighlight"), MoveHighlightAction},
    // Escape: the dialog's way out.
    {const_cast<String>("PressEscape"), PressEscapeAction},
    // Return and Space: the focused button, or the dialog's default one.
    {const_cast<String>("PressFocused"), PressFocusedAction},
    // The wheel on a list.
    {const_cast<String>("ScrollList"), ScrollListAction},
};

}  // namespace

void RegisterActions(XtAppContext context) { XtAppAddActions(context, keyboardActions, XtNumber(keyboardActions)); }

void Attach(Widget shell, std::vector<FocusStop> order, int initial, DialogKeys keys) {
    if (order.empty()) return;
    // A shell made where an old, forgotten one was must not meet its ring.
    Forget(shell, nullptr, nullptr);
    auto ring = std::make_unique<FocusRing>();
    ring->shell = shell;
    ring->order = std::move(order);
    ring->keys = keys;
    // Parsed once: the toolkit never frees a parsed table.
    static const XtTranslations controlKeys = XtParseTranslationTable(kControlKeys);
    static const XtTranslations listWheel = XtParseTranslationTable(kListWheel);
    for (const FocusStop& stop : ring->order) {
        XtAugmentTranslations(stop.widget, controlKeys);
        if (IsList(stop.widget)) XtAugmentTranslations(stop.widget, listWheel);
    }
    // Keys pressed over the dialog's background or a label reach the form.
    const Widget form = XtNameToWidget(shell, "form");
    if (form != nullptr) XtAugmentTranslations(form, controlKeys);
    OverrideTextKeys(form, controlKeys);
    // A window manager that follows the input hint gives the dialog the
    // keyboard at all.
    XtVaSetValues(shell, XtNinput, True, nullptr);
    XtAddCallback(shell, XtNdestroyCallback, Forget, nullptr);
    Focus(*ring, std::clamp(initial, 0, static_cast<int>(ring->order.size()) - 1));
    SettleRing(*ring);
    rings.push_back(std::move(ring));
}

void Settle(Widget shell) {
    if (FocusRing* ring = RingOf(shell)) SettleRing(*ring);
}

}  // namespace KeyboardFocus
