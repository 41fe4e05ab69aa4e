#include "ui/WindowManagerAtoms.h"

#include <cstddef>

#include "ui/ForgivenXErrors.h"

#include <X11/Xresource.h>
#include <X11/Xutil.h>

namespace {

WindowManagerAtoms atoms;

}  // namespace

const WindowManagerAtoms& WindowManagerAtomsOf(Display* display) {
    // Noted on the display, whose context data goes when it closes, so a
    // display opened later interns again.
    static const XContext interned = XUniqueContext();
    XPointer noted = nullptr;
    if (XFindContext(display, DefaultRootWindow(display), interned, &noted) == 0) return atoms;
    char* names[] = {const_cast<char*>("UTF8_STRING"),
                     const_cast<char*>("_NET_WM_NAME"),
                     const_cast<char*>("_NET_WM_ICON_NAME"),
                     const_cast<char*>("_NET_WM_WINDOW_TYPE"),
                     const_cast<char*>("_NET_WM_WINDOW_TYPE_DIALOG"),
                     const_cast<char*>("_NET_WM_WINDOW_TYPE_NORMAL"),
                     const_cast<char*>("_NET_WM_PID"),
                     const_cast<char*>("_NET_ACTIVE_WINDOW")};
    Atom* fields[] = {&atoms.utf8String, &atoms.name,       &atoms.iconName, &atoms.windowType,
                      &atoms.typeDialog, &atoms.typeNormal, &atoms.pid,      &atoms.activeWindow};
    Atom found[sizeof names / sizeof names[0]] = {};
    {
        ForgivingXErrors forgiving(display);
        XInternAtoms(display, names, static_cast<int>(sizeof names / sizeof names[0]), False, found);
    }
    for (std::size_t i = 0; i < sizeof names / sizeof names[0]; ++i) *fields[i] = found[i];
    XSaveContext(display, DefaultRootWindow(display), interned, reinterpret_cast<XPointer>(&atoms));
    return atoms;
}
