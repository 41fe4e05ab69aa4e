// The endings of the X side, each in a process of its own: an X or toolkit
// error ends the program with 255 wherever it is reported, also inside a call
// that waits for the server's reply; a lost display and the font report end
// it with 0, the report in the toolkit's own wording; an exception out of a
// tick ends the loop, and InitXApp returns 0.

#include <stdlib.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "app/ClientLink.h"
#include "app/Settings.h"
#include "base/xml/SimpleXML.h"
#include "protocol/UIReports.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Sandbox.h"
#include "tests/support/Xvfb.h"
#include "ui/XApplication.h"
#include "ui/ForgivenXErrors.h"
#include "ui/XDialogCalls.h"
#include "ui/XGlobals.h"

#include <X11/Xatom.h>

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
    const bool started = program.Exec(
        ZAM_CLIENTUI_BINARY, {std::string("DISPLAY=") + getenv("DISPLAY"), "LANG=C", "HOME=/nonexistent"}, options);
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
// pipe, with `tick` run on the first tick. InitXApp's own return ends the
// child with 100 more than its result, telling it from an ExitCleanup.
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
        return InitXApp(1, argv) + 100;
    });
    if (!started) return ending;
    while (auto frame = child.ReadFrame(kBound)) ending.frames.push_back(*frame);
    ending.status = child.WaitForExit(kBound);
    return ending;
}

class TickFailure : public DebuggableException {};

TEST(XErrorExit, EachEndingOfTheLoop) {
    struct Case {
        const char* name;
        void (*tick)();
        int status;
        bool silent;  // nothing reaches the pipe
    };
    const Case cases[] = {
        // Nothing waits for a reply: the error arrives while the loop waits for events.
        {"X error in the idle loop",
         [] {
             XMapWindow(display, static_cast<Window>(0x7fffffff));
             XFlush(display);
         },
         255, false},
        // A window-manager hint the server refuses is passed over, even once
        // the requests after it have been answered.
        {"refused hint, then an exception",
         [] {
             {
                 ForgivingXErrors forgiving(display);
                 const unsigned char name[] = "x";
                 XChangeProperty(display, static_cast<Window>(0x7fffffff), XA_WM_NAME, XA_STRING, 8, PropModeReplace,
                                 name, 1);
             }
             XSync(display, False);
             throw TickFailure();
         },
         100, true},
        {"lost display", [] { shutdown(ConnectionNumber(display), SHUT_RDWR); }, 0, false},
        {"toolkit error",
         [] { XtAppErrorMsg(app_context, "invalidParameter", "test", "XtToolkitError", "A broken call", nullptr, nullptr); },
         255, true},
        {"exception out of the tick", [] { throw TickFailure(); }, 100, true},
        {"another warning, then an exception",
         [] {
             XtAppWarningMsg(app_context, "conversionError", "string", "XtToolkitError", "Cannot convert", nullptr,
                             nullptr);
             throw TickFailure();
         },
         100, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const Ending ending = RunInitXApp(c.tick);
        EXPECT_EQ(ending.status, c.status);
        if (c.silent) {
            EXPECT_EQ(ending.frames, std::vector<std::string>{});
        }
    }
}

TEST(XErrorExit, TheFontReportIsSentTwiceInTheToolkitsWordingWhateverTheErrorDatabaseSays) {
    const Ending ending = RunInitXApp([] {
        XrmPutStringResource(XtAppGetErrorDatabase(app_context), "noFont.cvtStringToFontSet",
                             "A wording of this machine");
        XtAppWarningMsg(app_context, "noFont", "cvtStringToFontSet", "XtToolkitError",
                        "Unable to load any usable fontset", nullptr, nullptr);
    });
    EXPECT_EQ(ending.status, 0);
    ASSERT_EQ(ending.frames.size(), 2u);
    EXPECT_EQ(ending.frames[0], ending.frames[1]);
    const std::unique_ptr<XMLElement> root = SimpleXML::Parse(UStringRef<UTF8>(ending.frames[0]));
    ASSERT_TRUE(root);
    EXPECT_EQ(root->Name().View(), "ClientToUI");
    ClientUIErrorMessage error;
    XMLSerialize(root->GetChildElement("ClientUIErrorMessage"), error);
    EXPECT_EQ(error.errorCode, 1u);
    EXPECT_EQ(error.debugString, "noFont (Unable to load any usable fontset)");
}

}  // namespace
