// The endings of the X side's error handlers, each in a process of its own:
// an X error ends the program with 255 wherever it is reported, also inside a
// call that waits for the server's reply, and the font report carries the
// toolkit's own wording.

#include <stdlib.h>
#include <unistd.h>

#include <chrono>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "app/ClientLink.h"
#include "app/Settings.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Sandbox.h"
#include "tests/support/Xvfb.h"
#include "ui/XApplication.h"
#include "ui/XDialogCalls.h"
#include "ui/XGlobals.h"

namespace {

::testing::Environment* const xvfb = AddXvfbEnvironment();

// Far above start-up, a tick and the two-second pause of every ending: only a
// hang reaches it.
constexpr std::chrono::seconds kBound(20);

// The real program with `options` after its name, started and initialised as
// the client does it; its exit status, nothing if it still runs after kBound.
std::optional<int> ProgramStatus(const std::vector<std::string>& options) {
    const Sandbox sandbox;
    const std::string base = sandbox.Path("base");
    ChildProcess program;
    const bool started = program.Fork([&] {
        std::vector<char*> argv{const_cast<char*>(ZAM_CLIENTUI_BINARY)};
        for (const std::string& option : options) argv.push_back(const_cast<char*>(option.c_str()));
        argv.push_back(nullptr);
        const std::string display = std::string("DISPLAY=") + getenv("DISPLAY");
        char* envp[] = {const_cast<char*>(display.c_str()), const_cast<char*>("LANG=C"),
                        const_cast<char*>("HOME=/nonexistent"), nullptr};
        execve(ZAM_CLIENTUI_BINARY, argv.data(), envp);
        return 127;
    });
    std::optional<int> status;
    if (started && program.ReadFrame(kBound) && program.WriteFrame(InitializationDocument(base))) {
        status = program.WaitForExit(kBound);
    }
    return status;
}

TEST(XErrorExit, AnErrorInsideARoundTripEndsTheProgramWith255) {
    // The hidden window cannot have that depth. Its creation fails on the
    // first tick, and the error comes back inside the reply that realizing
    // the window waits for (an atom's).
    EXPECT_EQ(ProgramStatus({"-xrm", "*ZAMClientUIHiddenWindow.depth: 7"}), 255);
}

// What the first tick does in place of making the hidden window.
void (*firstTick)() = nullptr;

class FirstTickScreen : public XDialogCalls {
    void CreateHiddenWindowOnce() override {
        if (firstTick != nullptr) std::exchange(firstTick, nullptr)();
    }
};

struct Ending {
    std::optional<int> status;
    std::vector<std::string> frames;
};

// InitXApp as main runs it after initialisation, in a forked child on the
// pipe, with `tick` run on the first tick.
Ending RunInitXApp(void (*tick)()) {
    firstTick = tick;
    ChildProcess child;
    Ending ending;
    const bool started = child.Fork([] {
        clientPipe = new UnixPipe(readQ, writeQ);
        clientPipe->AddReference();
        clientPipe->Start(0, 1);
        initialized = true;
        static FirstTickScreen screen;
        WireDialogCalls(&screen);
        char name[] = "ZAMClientUI";
        char* argv[] = {name, nullptr};
        return InitXApp(1, argv) + 100;  // InitXApp only comes back after an exception
    });
    if (!started) return ending;
    while (auto frame = child.ReadFrame(kBound)) ending.frames.push_back(*frame);
    ending.status = child.WaitForExit(kBound);
    return ending;
}

TEST(XErrorExit, AnErrorPickedUpByTheIdleLoopEndsTheProgramWith255) {
    const Ending ending = RunInitXApp([] {
        // Nothing waits for a reply: the error arrives while the loop waits for events.
        XMapWindow(display, static_cast<Window>(0x7fffffff));
        XFlush(display);
    });
    EXPECT_EQ(ending.status, 255);
}

TEST(XErrorExit, TheFontReportHasTheToolkitsWordingWhateverTheErrorDatabaseSays) {
    const Ending ending = RunInitXApp([] {
        XrmPutStringResource(XtAppGetErrorDatabase(app_context), "noFont.cvtStringToFontSet",
                             "A wording of this machine");
        XtAppWarningMsg(app_context, "noFont", "cvtStringToFontSet", "XtToolkitError",
                        "Unable to load any usable fontset", nullptr, nullptr);
    });
    EXPECT_EQ(ending.status, 0);
    ASSERT_EQ(ending.frames.size(), 2u);
    EXPECT_NE(ending.frames[0].find("<DebugString>noFont (Unable to load any usable fontset)</DebugString>"),
              std::string::npos)
        << ending.frames[0];
}

}  // namespace
