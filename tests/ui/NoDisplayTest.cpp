// The real ZAMClientUI binary with no X server to reach: opening the display
// fails after the initialisation and the program ends with -1. Needs no
// display of its own, so it also runs under TSan.

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
    // A display named by a socket path that cannot exist: nothing listens
    // inside our own fresh directory, and no display number is guessed.
    const std::string environment[] = {"DISPLAY=" + directory + "/nosuchserver:0", "PATH=/usr/bin:/bin", "LANG=C"};
    for (const bool unset : {false, true}) {
        SCOPED_TRACE(unset ? "no DISPLAY" : "DISPLAY names a missing server");
        ChildProcess program;
        std::vector<std::string> env(std::begin(environment), std::end(environment));
        if (unset) env.erase(env.begin());
        ASSERT_TRUE(program.Exec(ZAM_CLIENTUI_BINARY, env));
        ASSERT_TRUE(program.ReadFrame(std::chrono::seconds(10)));  // ReadyForData
        ASSERT_TRUE(program.WriteFrame(InitializationDocument(directory + "/base")));
        EXPECT_EQ(program.WaitForExit(std::chrono::seconds(20)), 255);
        const std::string base = directory + "/base";
        rmdir(base.c_str());
    }
    rmdir(directory.c_str());
}

}  // namespace
