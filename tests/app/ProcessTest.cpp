// The real program, driven through real pipes as the client drives it. The
// child's environment has no DISPLAY, so after initialisation it ends on the
// failed display.

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <set>
#include <string>

#include "base/files/FileOperations.h"
#include "base/unicode/Base64.h"
#include "protocol/Documents.h"
#include "protocol/InitializationInfo.h"
#include "protocol/UIReports.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Sandbox.h"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

// Generous: the program needs about three seconds (a poll, then its exit pause).
constexpr auto kExitBound = std::chrono::seconds(6);

// The program with the client's end of the pipe, once it has announced itself.
class Process : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(program_.Exec(ZAM_CLIENTUI_BINARY, {"PATH=/usr/bin:/bin", "LC_ALL=C"}));
        EXPECT_EQ(program_.ReadFrame(kExitBound), std::string(ConvertToXML(ReadyForData()).View()));
    }

    ChildProcess program_;
};

TEST_F(Process, EndsSoonAfterTheClientCloses) {
    program_.CloseInput();
    const auto start = Clock::now();
    EXPECT_EQ(program_.WaitForExit(kExitBound), 0);
    // At most a second until the next poll, then the two-second exit pause;
    // the slack covers a loaded machine running the sanitizer builds.
    EXPECT_LT(Clock::now() - start, std::chrono::milliseconds(5000));
}

TEST_F(Process, AnOversizedFrameEndsIt) {
    ASSERT_TRUE(program_.Write(std::string("\x01\x00\x20\x00", 4)));  // 2 MiB + 1
    EXPECT_EQ(program_.WaitForExit(kExitBound), 0);
}

TEST_F(Process, InitialisationReplacesTheBaseDirectoryThenTheDisplayFails) {
    const Sandbox sandbox;
    const std::string base = sandbox.Path("base");
    fs::create_directories(sandbox.Path("base/old/deeper"));
    WriteWholeFile(MakeFileLocation(sandbox.Path("base/stale.txt")), "stale");
    WriteWholeFile(MakeFileLocation(sandbox.Path("base/old/deeper/inner.txt")), "inner");

    InitializationInfo info;
    info.baseDirectory = MakeFileLocation(base);
    for (const auto& [name, bytes] : {std::pair{"page.html", "<p>hello</p>"}, {"_brand.xlat", "Snooze\tLater"}}) {
        info.supportFiles.push_back(FileTransfer{FileName(name), FileName(), Base64Encoder::Encode(bytes).Str()});
    }
    ASSERT_TRUE(program_.WriteFrame(std::string(ConvertToXML(info).View())));
    EXPECT_EQ(program_.WaitForExit(kExitBound), 255);  // no display: the X side ends it with -1

    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(base)) names.insert(entry.path().filename());
    EXPECT_EQ(names, (std::set<std::string>{"_brand.xlat", "page.html"}));
    EXPECT_EQ(ReadWholeFile(MakeFileLocation(sandbox.Path("base/page.html"))), "<p>hello</p>");
}

}  // namespace
