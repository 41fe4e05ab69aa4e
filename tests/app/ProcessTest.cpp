// The real program, driven through real pipes as the client drives it. The
// child's environment has no DISPLAY, so after initialisation it ends on the
// failed display.

#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "protocol/Documents.h"
#include "protocol/UIReports.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Sandbox.h"

namespace {

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

// The bound is the only time here: at most a second until the next poll,
// then the two-second exit pause.
TEST_F(Process, EndsAfterTheClientCloses) {
    program_.CloseInput();
    EXPECT_EQ(program_.WaitForExit(kExitBound), 0);
}

// What initialisation writes is checked in-process and end to end.
TEST_F(Process, WithoutADisplayInitialisationEndsItWith255) {
    const Sandbox sandbox;
    ASSERT_TRUE(program_.WriteFrame(InitializationDocument(sandbox.Path("base"))));
    EXPECT_EQ(program_.WaitForExit(kExitBound), 255);  // the X side ends it with -1
}

}  // namespace
