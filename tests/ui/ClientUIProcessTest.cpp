// The real ZAMClientUI binary after its initialisation, on a private Xvfb that
// the test kills at the end.

#include <chrono>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "tests/support/ChildProcess.h"
#include "tests/support/Sandbox.h"
#include "tests/support/Xvfb.h"

#include <X11/Xlib.h>

namespace {

struct NamedWindows {
    int count = 0;
    int mapped = 0;
};

// The top-level windows named "ZAMClientUIHiddenWindow", and how many are mapped.
NamedWindows FindHiddenWindows(Display* display) {
    NamedWindows found;
    Window root = 0;
    Window parent = 0;
    Window* children = nullptr;
    unsigned int count = 0;
    if (XQueryTree(display, DefaultRootWindow(display), &root, &parent, &children, &count) == 0) return found;
    for (unsigned int i = 0; i < count; ++i) {
        char* name = nullptr;
        if (XFetchName(display, children[i], &name) == 0 || name == nullptr) continue;
        if (std::string(name) == "ZAMClientUIHiddenWindow") {
            ++found.count;
            XWindowAttributes attributes{};
            if (XGetWindowAttributes(display, children[i], &attributes) != 0 && attributes.map_state != IsUnmapped) {
                ++found.mapped;
            }
        }
        XFree(name);
    }
    if (children != nullptr) XFree(children);
    return found;
}

TEST(ClientUIOnXvfb, OneUnmappedHiddenWindowThenLosingTheDisplayEndsWith0) {
    const Sandbox sandbox;
    XvfbServer server;
    ASSERT_TRUE(server.Start()) << server.Failure();
    ChildProcess program;
    ASSERT_TRUE(program.Exec(ZAM_CLIENTUI_BINARY,
                             {"DISPLAY=" + server.DisplayName(), "PATH=/usr/bin:/bin", "LANG=C", "HOME=/nonexistent"}));
    ASSERT_TRUE(program.ReadFrame(std::chrono::seconds(10)));  // ReadyForData
    ASSERT_TRUE(program.WriteFrame(InitializationDocument(sandbox.Path("base"))));
    Display* observer = XOpenDisplay(server.DisplayName().c_str());
    ASSERT_NE(observer, nullptr);

    NamedWindows found;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(15);
    while (found.count == 0 && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        found = FindHiddenWindows(observer);
    }
    EXPECT_EQ(found.count, 1);
    EXPECT_EQ(found.mapped, 0);
    // Some ticks later, still the one window.
    std::this_thread::sleep_for(std::chrono::milliseconds(2500));
    found = FindHiddenWindows(observer);
    EXPECT_EQ(found.count, 1);
    EXPECT_EQ(found.mapped, 0);
    EXPECT_FALSE(program.WaitForExit(std::chrono::milliseconds(0)));

    XCloseDisplay(observer);
    server.Stop();
    EXPECT_EQ(program.WaitForExit(std::chrono::seconds(20)), 0);
}

}  // namespace
