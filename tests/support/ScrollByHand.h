#pragma once

// How a person scrolls a text area of the program: the wheel, then the first
// button on its scroll bar. Header-only, for the display tests; include it
// last (Xlib defines None, True, False and friends as macros).

#include <functional>
#include <string>
#include <vector>

#include <X11/Intrinsic.h>
#include <X11/StringDefs.h>
#include <X11/Xaw/Text.h>
#include <X11/keysym.h>
#include "tests/support/XServerInput.h"

// The line shown at the top of `text` after each of: a notch of the wheel
// down, another, one up, the first button pressed and released nine tenths
// down the scroll bar (found as the text's child window, as the server has
// it), then the keys Home, Down and Page Down with the pointer over the
// text. `pump` handles what the server sends in between.
inline std::vector<int> ScrollByHand(Widget text, const std::function<void()>& pump) {
    Display* const display = XtDisplay(text);
    auto topLine = [&] {
        String string = nullptr;
        XtVaGetValues(text, XtNstring, &string, nullptr);
        const std::string shown = string != nullptr ? string : "";
        const auto top = static_cast<std::string::size_type>(XawTextTopPosition(text));
        int line = 0;
        for (std::string::size_type at = 0; at < top && at < shown.size(); ++at) line += shown[at] == '\n';
        return line;
    };
    std::vector<int> lines;
    for (const unsigned button : {5u, 5u, 4u}) {
        ClickThroughServer(display, XtWindow(text), 20, 20, button);
        pump();
        lines.push_back(topLine());
    }
    Window root = 0, parent = 0, *children = nullptr;
    unsigned count = 0;
    XQueryTree(display, XtWindow(text), &root, &parent, &children, &count);
    const Window bar = count > 0 ? children[0] : 0;
    if (children != nullptr) XFree(children);
    XWindowAttributes size{};
    if (bar != 0 && XGetWindowAttributes(display, bar, &size) != 0) {
        ClickThroughServer(display, bar, size.width / 2, size.height * 9 / 10);
        pump();
    }
    lines.push_back(topLine());
    for (const KeySym key : {XK_Home, XK_Down, XK_Next}) {
        KeyThroughServer(display, XtWindow(text), 40, 20, key);
        pump();
        lines.push_back(topLine());
    }
    return lines;
}
