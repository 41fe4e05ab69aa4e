// InitXApp in forked children, with a dialog call that fails the way a tick
// can: the X loop's endings and what reaches the pipe before them.

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "app/ClientLink.h"
#include "app/Settings.h"
#include "base/xml/SimpleXML.h"
#include "protocol/UIReports.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Xvfb.h"
#include "ui/XApplication.h"
#include "ui/XDialogCalls.h"
#include "ui/XGlobals.h"

namespace {

::testing::Environment* const xvfb = AddXvfbEnvironment();

// What the dialog call the tick makes every time does on the first tick.
enum class Fault { Throw, FontWarning, OtherWarningThenThrow, ToolkitError };
Fault fault = Fault::Throw;

class TickFailure : public DebuggableException {};

void FailTheTick() {
    if (fault == Fault::FontWarning) {  // as the toolkit reports a font set it cannot make
        XtAppWarningMsg(app_context, "noFont", "cvtStringToFontSet", "XtToolkitError",
                        "Unable to load any usable fontset", nullptr, nullptr);
    } else if (fault == Fault::ToolkitError) {
        XtAppErrorMsg(app_context, "invalidParameter", "test", "XtToolkitError", "A broken call", nullptr, nullptr);
    } else {
        if (fault == Fault::OtherWarningThenThrow) {
            XtAppWarningMsg(app_context, "conversionError", "string", "XtToolkitError", "Cannot convert", nullptr,
                            nullptr);
        }
        throw TickFailure();
    }
}

// The X side's screen, with the call the tick makes every time failing.
class FailingScreen : public XDialogCalls {
    void RemoveTimedoutMessageDialogs() override { FailTheTick(); }
};

// Marks InitXApp's return on the pipe, telling it from an ExitCleanup with the same status.
constexpr char kReturned[] = "InitXApp returned";

// The program after its initialisation: the pipe on standard input and output, then the X side.
int RunInitializedProgram() {
    clientPipe = new UnixPipe(readQ, writeQ);
    clientPipe->AddReference();
    clientPipe->Start(0, 1);
    initialized = true;
    static FailingScreen screen;
    WireDialogCalls(&screen);
    char name[] = "ZAMClientUI";
    char* argv[] = {name, nullptr};
    const int result = InitXApp(1, argv);
    SendToClient(clientWriter, UStringRef<UTF8>(kReturned));
    while (!writeQ.IsEmpty()) UnixPipe::Sleep(10);
    UnixPipe::Sleep(200);  // the writer thread has taken the last one; let it write
    return result;
}

struct Ending {
    int status = -2;
    std::vector<std::string> frames;
};

Ending RunWith(Fault chosen) {
    fault = chosen;
    ChildProcess child;
    EXPECT_TRUE(child.Fork(RunInitializedProgram));
    Ending ending;
    // The error report waits for the pipe to drain, then two seconds.
    while (auto frame = child.ReadFrame(std::chrono::seconds(30))) ending.frames.push_back(*frame);
    if (auto status = child.WaitForExit(std::chrono::seconds(30))) ending.status = *status;
    return ending;
}

TEST(XAppLoop, AnExceptionOutOfTheTickReturns0AndAToolkitErrorExits255) {
    struct Case {
        Fault fault;
        int status;
        std::vector<std::string> frames;
    };
    const Case cases[] = {
        {Fault::Throw, 0, {kReturned}}, {Fault::OtherWarningThenThrow, 0, {kReturned}}, {Fault::ToolkitError, 255, {}}};
    for (const Case& c : cases) {
        SCOPED_TRACE(static_cast<int>(c.fault));
        const Ending ending = RunWith(c.fault);
        EXPECT_EQ(ending.status, c.status);
        EXPECT_EQ(ending.frames, c.frames);
    }
}

TEST(XAppLoop, TheFontWarningIsReportedTwiceThenTheProgramEndsWith0) {
    const Ending ending = RunWith(Fault::FontWarning);
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
