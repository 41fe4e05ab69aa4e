// The real ZAMClientUI binary with no X server to reach: opening the display
// fails after the initialisation. Needs no display, so it also runs under TSan.

#include <stdlib.h>
#include <unistd.h>

#include <chrono>
#include <string>

#include <gtest/gtest.h>

#include "tests/ui/ChildProcess.h"

namespace {

TEST(ClientUIWithoutADisplay, InitialisationEndsItWith255) {
    char pattern[] = "/tmp/zam-ui-nodisplay-XXXXXX";
    ASSERT_NE(mkdtemp(pattern), nullptr);
    const std::string directory = pattern;
    const std::string base = directory + "/base";
    {
        // A socket path inside our own fresh directory: nothing listens there,
        // and no display number is guessed.
        ChildProcess program;
        ASSERT_TRUE(program.Exec(ZAM_CLIENTUI_BINARY,
                                 {"DISPLAY=" + directory + "/nosuchserver:0", "PATH=/usr/bin:/bin", "LANG=C"}));
        ASSERT_TRUE(program.ReadFrame(std::chrono::seconds(10)));  // ReadyForData
        ASSERT_TRUE(program.WriteFrame(InitializationDocument(base)));
        EXPECT_EQ(program.WaitForExit(std::chrono::seconds(20)), 255);
    }
    rmdir(base.c_str());
    rmdir(directory.c_str());
}

}  // namespace
