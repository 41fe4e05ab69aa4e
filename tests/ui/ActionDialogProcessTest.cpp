// The action request dialog's two ways of failing, through the real program on
// a private Xvfb: a build failure is reported and ends the program with 0; a
// refresh failure is silent (the batch is dropped), from the tick it ends it with 0.

#include <stdlib.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/time/TimeObject.h"
#include "base/unicode/Base64.h"
#include "protocol/ActionRequest.h"
#include "protocol/Documents.h"
#include "protocol/InitializationInfo.h"
#include "protocol/UIReports.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Sandbox.h"
#include "tests/support/Xvfb.h"

namespace {

struct Outcome {
    std::vector<std::string> frames;  // after ReadyForData
    std::optional<int> status;
};

// Starts the program under "C" with `brandFile` (if any) as "_brand.xlat", sends
// one action request, and collects what it sends until it ends or `wait` passes.
// A refresh failing in the tick unwinds through the toolkit's loop, whose own
// blocks stay unfreed when main returns: the library's, not a leak of ours.
Outcome RunWith(const std::string& brandFile, const std::string& title, bool forced, std::chrono::seconds wait) {
    const Sandbox sandbox;
    XvfbServer server;
    EXPECT_TRUE(server.Start()) << server.Failure();
    InitializationInfo info;
    info.baseDirectory = MakeFileLocation(sandbox.Path("base"));
    if (!brandFile.empty()) {
        info.supportFiles.push_back(
            FileTransfer{FileName("_brand.xlat"), FileName(""), Base64Encoder::Encode(brandFile).Str()});
    }
    ActionRequest action;
    action.id = 1;
    action.title = SharedUString<UTF8>(title);
    action.forceRun = forced;
    action.deadline = TimeObject(Instant::Now() + TimeInterval(120LL * 1000000), TimeZone(0));
    Outcome run;
    {  // a program still running loses its pipe at the end and ends
        ChildProcess program;
        EXPECT_TRUE(program.Exec(ZAM_CLIENTUI_BINARY, {"DISPLAY=" + server.DisplayName(), "PATH=/usr/bin:/bin",
                                                       "LANG=C", "HOME=/nonexistent",
                                                       "ASAN_OPTIONS=detect_leaks=0",  // the leak note above
                                                       "XFILESEARCHPATH=/nonexistent/%N",
                                                       "XUSERFILESEARCHPATH=/nonexistent/%N"}));
        EXPECT_TRUE(program.ReadFrame(std::chrono::seconds(10)));  // ReadyForData
        EXPECT_TRUE(program.WriteFrame(std::string(ConvertToXML(info).View())));
        EXPECT_TRUE(program.WriteFrame(std::string(ConvertToXML(action).View())));
        const auto end = std::chrono::steady_clock::now() + wait;
        while (!run.status && std::chrono::steady_clock::now() < end) {
            if (auto frame = program.ReadFrame(std::chrono::milliseconds(200))) run.frames.push_back(*frame);
            run.status = program.WaitForExit(std::chrono::milliseconds(0));
        }
    }
    return run;
}

TEST(ActionDialogFailures, ABuildFailureIsReportedTwiceAndEndsWith0) {
    // "C" keeps the brand file, whose title the locale cannot show.
    const Outcome run = RunWith("Action Requests\tAktionsanfr\xc3\xa4gen\n", "One", false, std::chrono::seconds(30));
    EXPECT_EQ(run.status, 0);
    ASSERT_EQ(run.frames.size(), 2u);
    EXPECT_EQ(run.frames[0], run.frames[1]);
    ClientUIErrorMessage error(ClientUIErrorMessage::DialogError, "ActionRequestDialog");
    EXPECT_EQ(run.frames[0], ConvertToXML(error).View());
}

TEST(ActionDialogFailures, AFailedRefreshIsSilentAndFromTheTickEndsWith0) {
    // In the batch: dropped, and the program goes on.
    const Outcome batch = RunWith("", "Caf\xc3\xa9", false, std::chrono::seconds(4));
    EXPECT_FALSE(batch.status);
    EXPECT_TRUE(batch.frames.empty());
    // A forced deadline under five minutes makes the tick refresh the countdown.
    const Outcome tick = RunWith("", "Caf\xc3\xa9", true, std::chrono::seconds(30));
    EXPECT_EQ(tick.status, 0);
    EXPECT_TRUE(tick.frames.empty());
}

}  // namespace
