#include "client/OpenDialogRequest.h"

#include <poll.h>

#include <cstring>

// X headers last: they define None, True, False and friends as macros.
#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace {

constexpr char kHiddenWindowName[] = "ZAMClientUIHiddenWindow";

// Other clients' windows may go at any moment between a look and the next
// request about them; an error for one that has gone is no failure of ours,
// where Xlib's own handler would end the client.
int IgnoreGoneWindows(Display*, XErrorEvent*) { return 0; }

int SendToNamedWindows(Display* display) {
    Window root = 0, parent = 0;
    Window* children = nullptr;
    unsigned int count = 0;
    if (XQueryTree(display, DefaultRootWindow(display), &root, &parent, &children, &count) == 0) return 0;
    int sent = 0;
    for (unsigned int i = 0; i < count; ++i) {
        char* name = nullptr;
        if (XFetchName(display, children[i], &name) == 0 || name == nullptr) continue;
        const bool match = std::strcmp(name, kHiddenWindowName) == 0;
        XFree(name);
        if (!match) continue;
        XEvent event;
        std::memset(&event, 0, sizeof event);
        event.xclient.type = ClientMessage;
        event.xclient.window = children[i];
        event.xclient.message_type = XInternAtom(display, "ZAMClientUIOpen", False);
        event.xclient.format = 8;
        std::memcpy(event.xclient.data.b, "open", 4);
        // Event mask 0: the message goes to the window's owner alone.
        if (XSendEvent(display, children[i], False, 0, &event) != 0) ++sent;
    }
    if (children != nullptr) XFree(children);
    XFlush(display);
    return sent;
}

}  // namespace

int SendOpenRequest(const std::string& displayName, std::chrono::milliseconds limit, std::string& error) {
    Display* display = XOpenDisplay(displayName.empty() ? nullptr : displayName.c_str());
    if (display == nullptr) {
        const char* name = XDisplayName(displayName.empty() ? nullptr : displayName.c_str());
        error = std::string("cannot open the display \"") + (name != nullptr ? name : "") + "\"";
        return 0;
    }
    const XErrorHandler previous = XSetErrorHandler(IgnoreGoneWindows);
    const auto until = std::chrono::steady_clock::now() + limit;
    // New top-level windows announce themselves on the root; their names come
    // as property changes. Selected before the first look, so nothing made in
    // between is missed.
    XSelectInput(display, DefaultRootWindow(display), SubstructureNotifyMask);
    int sent = SendToNamedWindows(display);
    while (sent == 0) {
        while (sent == 0 && XPending(display) > 0) {
            XEvent event;
            XNextEvent(display, &event);
            if (event.type == CreateNotify) {
                XSelectInput(display, event.xcreatewindow.window, PropertyChangeMask);
                sent = SendToNamedWindows(display);
            } else if (event.type == PropertyNotify) {
                sent = SendToNamedWindows(display);
            }
        }
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(until - std::chrono::steady_clock::now()).count();
        if (sent != 0 || left <= 0) break;
        pollfd connection{ConnectionNumber(display), POLLIN, 0};
        poll(&connection, 1, static_cast<int>(left));
    }
    XCloseDisplay(display);
    XSetErrorHandler(previous);
    return sent;
}
