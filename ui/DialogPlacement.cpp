#include "ui/DialogPlacement.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "ui/MonitorPlacement.h"
#include "ui/XGlobals.h"

// IntrinsicP: XtMoveWidget.
#include <X11/IntrinsicP.h>
#include <X11/StringDefs.h>
#include <X11/extensions/Xinerama.h>

namespace {

struct PlacedDialog {
    Widget shell;
    Placement placement;
    Head head;  // as it was reported when the dialog was placed
    ScreenPoint origin;
};

// In the order they were placed; a dialog moved to another monitor counts as
// placed anew, so the last message on each monitor is the last one listed.
std::vector<PlacedDialog> placedDialogs;

// The monitors as the server reports them now. The extension is looked up
// first: asking a server without it would print a warning.
std::vector<Head> QueryHeads(Display* x) {
    std::vector<Head> reported;
    int eventBase = 0;
    int errorBase = 0;
    int count = 0;
    if (XineramaQueryExtension(x, &eventBase, &errorBase)) {
        if (XineramaScreenInfo* screens = XineramaQueryScreens(x, &count)) {
            for (int i = 0; i < count; ++i) {
                reported.push_back({screens[i].x_org, screens[i].y_org, screens[i].width, screens[i].height});
            }
            XFree(screens);
        }
    }
    const Screen* screen = DefaultScreenOfDisplay(x);
    return HeadsOrScreen(std::move(reported), {0, 0, WidthOfScreen(screen), HeightOfScreen(screen)});
}

std::optional<ScreenPoint> QueryPointer(Display* x) {
    Window root = 0;
    Window child = 0;
    int rootX = 0;
    int rootY = 0;
    int windowX = 0;
    int windowY = 0;
    unsigned int buttons = 0;
    // False while the pointer is on another screen of the display.
    if (!XQueryPointer(x, DefaultRootWindow(x), &root, &child, &rootX, &rootY, &windowX, &windowY, &buttons)) {
        return std::nullopt;
    }
    return ScreenPoint{rootX, rootY};
}

DialogSize OuterSize(Widget shell) {
    Dimension width = 0;
    Dimension height = 0;
    Dimension border = 0;
    XtVaGetValues(shell, XtNwidth, &width, XtNheight, &height, XtNborderWidth, &border, nullptr);
    return {width + 2 * border, height + 2 * border};
}

ScreenPoint OriginOn(const Head& head, Placement placement, DialogSize size) {
    if (placement == Placement::Cascaded) {
        for (auto placed = placedDialogs.rbegin(); placed != placedDialogs.rend(); ++placed) {
            if (placed->placement == Placement::Cascaded && placed->head == head) {
                return CascadedFrom(placed->origin, head, size);
            }
        }
    }
    return CentredOn(head, size);
}

void Forget(Widget shell) {
    placedDialogs.erase(std::remove_if(placedDialogs.begin(), placedDialogs.end(),
                                       [shell](const PlacedDialog& placed) { return placed.shell == shell; }),
                        placedDialogs.end());
}

void Destroyed(Widget shell, XtPointer, XtPointer) {
    Forget(shell);
}

// Where the dialog goes now, remembered last.
PlacedDialog Remember(Widget shell, Placement placement, const Head& head) {
    const PlacedDialog placed{shell, placement, head, OriginOn(head, placement, OuterSize(shell))};
    Forget(shell);
    placedDialogs.push_back(placed);
    return placed;
}

}  // namespace

void PlaceDialog(Widget shell, Placement placement) {
    if (shell == nullptr) return;
    Display* x = XtDisplay(shell);
    const PlacedDialog placed = Remember(shell, placement, HeadUnderPointer(QueryHeads(x), QueryPointer(x)));
    // Before the map: the shell hands the place to the window manager as its
    // position hint, too.
    XtVaSetValues(shell, XtNx, static_cast<Position>(placed.origin.x), XtNy, static_cast<Position>(placed.origin.y),
                  nullptr);
    XtRemoveCallback(shell, XtNdestroyCallback, Destroyed, nullptr);
    XtAddCallback(shell, XtNdestroyCallback, Destroyed, nullptr);
}

void KeepDialogsOnMonitors() {
    if (placedDialogs.empty() || display == nullptr) return;
    const std::vector<Head> heads = QueryHeads(display);
    std::optional<std::optional<ScreenPoint>> pointer;  // asked once, and only when a dialog moves
    const std::vector<PlacedDialog> before = placedDialogs;
    for (const PlacedDialog& placed : before) {
        if (std::find(heads.begin(), heads.end(), placed.head) != heads.end()) continue;
        if (!pointer) pointer = QueryPointer(display);
        const PlacedDialog moved = Remember(placed.shell, placed.placement, HeadUnderPointer(heads, *pointer));
        // A mapped shell is moved without asking its geometry manager, which
        // would wait for the window manager's answer and hold the tick up.
        XtMoveWidget(placed.shell, static_cast<Position>(moved.origin.x), static_cast<Position>(moved.origin.y));
    }
}

void ForgetPlacedDialogs() {
    placedDialogs.clear();
}
