// The real ZAMClientUI binary after its initialisation, on a private Xvfb
// per test (one of them kills its server).

#include <stdlib.h>
#include <unistd.h>

#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/XvfbEnvironment.h"
#include "tests/ui/ChildProcess.h"

#include <X11/Xlib.h>

namespace {

// A private directory for the program's base directory; removed with the
// files the program wrote into it, never anything above it.
class TemporaryDirectory {
public:
    TemporaryDirectory() {
        char pattern[] = "/tmp/zam-ui-process-XXXXXX";
        if (mkdtemp(pattern) != nullptr) path_ = pattern;
    }
    ~TemporaryDirectory() {
        if (path_.rfind("/tmp/zam-ui-process-", 0) != 0) return;
        const std::string base = path_ + "/base";
        rmdir(base.c_str());
        rmdir(path_.c_str());
    }
    const std::string& Path() const { return path_; }

private:
    std::string path_;
};

std::vector<std::string> ProgramEnvironment(const std::string& display) {
    return {"DISPLAY=" + display, "PATH=/usr/bin:/bin", "LANG=C", "HOME=/nonexistent"};
}

// Starts the program and initialises it; false when it did not get that far.
bool StartInitialized(ChildProcess& program, const std::string& display, const TemporaryDirectory& directory) {
    if (!program.Exec(ZAM_CLIENTUI_BINARY, ProgramEnvironment(display))) return false;
    if (!program.ReadFrame(std::chrono::seconds(10))) return false;  // ReadyForData
    return program.WriteFrame(InitializationDocument(directory.Path() + "/base"));
}

// The top-level windows named `name`, and how many of them are mapped.
struct NamedWindows {
    int count = 0;
    int mapped = 0;
};

NamedWindows FindTopLevel(Display* display, const char* name) {
    NamedWindows found;
    Window root = 0;
    Window parent = 0;
    Window* children = nullptr;
    unsigned int count = 0;
    if (XQueryTree(display, DefaultRootWindow(display), &root, &parent, &children, &count) == 0) return found;
    for (unsigned int i = 0; i < count; ++i) {
        char* windowName = nullptr;
        if (XFetchName(display, children[i], &windowName) != 0 && windowName != nullptr) {
            if (std::string(windowName) == name) {
                ++found.count;
                XWindowAttributes attributes{};
                if (XGetWindowAttributes(display, children[i], &attributes) != 0 && attributes.map_state != IsUnmapped) {
                    ++found.mapped;
                }
            }
            XFree(windowName);
        }
    }
    if (children != nullptr) XFree(children);
    return found;
}

// Waits (bounded) for the program's hidden window to appear.
NamedWindows WaitForHiddenWindow(Display* display) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(15);
    NamedWindows found;
    while (std::chrono::steady_clock::now() < deadline) {
        found = FindTopLevel(display, "ZAMClientUIHiddenWindow");
        if (found.count > 0) break;
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    return found;
}

class ClientUIOnXvfb : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(server_.Start()) << server_.Failure();
        ASSERT_TRUE(StartInitialized(program_, server_.DisplayName(), directory_));
        observer_ = XOpenDisplay(server_.DisplayName().c_str());
        ASSERT_NE(observer_, nullptr);
    }
    void TearDown() override {
        if (observer_ != nullptr) XCloseDisplay(observer_);
    }

    XvfbServer server_;
    TemporaryDirectory directory_;
    ChildProcess program_;
    Display* observer_ = nullptr;
};

TEST_F(ClientUIOnXvfb, TheHiddenWindowExistsOnceAndIsNeverMapped) {
    NamedWindows found = WaitForHiddenWindow(observer_);
    EXPECT_EQ(found.count, 1);
    EXPECT_EQ(found.mapped, 0);
    // Some ticks later, still the one window.
    std::this_thread::sleep_for(std::chrono::milliseconds(2500));
    found = FindTopLevel(observer_, "ZAMClientUIHiddenWindow");
    EXPECT_EQ(found.count, 1);
    EXPECT_EQ(found.mapped, 0);
    EXPECT_FALSE(program_.WaitForExit(std::chrono::milliseconds(0)));
}

TEST_F(ClientUIOnXvfb, LosingTheDisplayEndsTheProgramWith0) {
    ASSERT_EQ(WaitForHiddenWindow(observer_).count, 1);
    XCloseDisplay(observer_);
    observer_ = nullptr;
    server_.Stop();
    EXPECT_EQ(program_.WaitForExit(std::chrono::seconds(20)), 0);
}

}  // namespace
