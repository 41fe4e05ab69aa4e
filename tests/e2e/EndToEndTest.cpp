// The optimised program end to end: started, initialised and fed as the
// client does it, watched through its pipe and through the X server.

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include "tests/e2e/LiveProgram.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TestData.h"

#include <X11/Xlib.h>

namespace {

namespace fs = std::filesystem;

constexpr char kHiddenWindow[] = "ZAMClientUIHiddenWindow";

std::string FileText(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

TEST(EndToEnd, InitialisationWritesTheFilesThenTheHiddenWindowAppearsUnmapped) {
    LiveProgram program;
    Scenario scenario;
    scenario.files = {{"notes.txt", "", "first line\n\x01\xff bytes"}, {"_brand.xlat", "", "Cancel\tStop\n"}};
    program.Start(scenario);  // fails the test without ReadyForData
    const std::vector<Window> hidden = program.WaitForTopLevelWindows(kHiddenWindow);
    ASSERT_EQ(hidden.size(), 1u);
    EXPECT_FALSE(program.IsMapped(hidden[0]));
    EXPECT_EQ(FileText(program.Files().Path("base/notes.txt")), "first line\n\x01\xff bytes");
    EXPECT_EQ(FileText(program.Files().Path("base/_brand.xlat")), "Cancel\tStop\n");
    EXPECT_EQ(program.CloseAndWait(), 0);
}

// The client killed outright leaves no program behind: its death signal
// ends it, and this process, as the subreaper, collects it.
TEST(EndToEnd, KillingTheClientEndsTheProgram) {
    ASSERT_EQ(prctl(PR_SET_CHILD_SUBREAPER, 1), 0);
    LiveProgram program;
    std::ofstream(program.Files().Path("long.scenario")) << "at 60s close\n";
    int out[2];
    ASSERT_EQ(pipe2(out, O_CLOEXEC), 0);
    int ended = -1;
    pid_t ui = 0;
    {
        ChildProcess client;  // killed outright and reaped at the end of this block
        const bool started = client.Exec(ZAM_CLIENT_BINARY, {"DISPLAY=" + program.DisplayName(), "PATH=/usr/bin:/bin"},
                                         {"--ui", ZAM_CLIENTUI_BINARY, "--base-directory", program.Files().Path("base"),
                                          program.Files().Path("long.scenario")},
                                         {{1, out[1]}});
        close(out[1]);
        ASSERT_TRUE(started);
        const std::string transcript = ReadUntil(out[0], "ReadyForData", kCeiling);
        close(out[0]);
        const std::size_t pid = transcript.find("(pid ");
        ASSERT_NE(pid, std::string::npos) << transcript;
        ui = static_cast<pid_t>(std::stol(transcript.substr(pid + 5)));
        ended = static_cast<int>(syscall(SYS_pidfd_open, ui, 0));
        ASSERT_GE(ended, 0);
    }
    // The program is now this process's child; it must end on its own.
    pollfd exited{ended, POLLIN, 0};
    EXPECT_EQ(poll(&exited, 1, 10000), 1) << "the program outlived its client";
    close(ended);
    int status = 0;
    ASSERT_EQ(waitpid(ui, &status, WNOHANG), ui);
    // Killed by its death signal, not ended by the closed pipe, which takes
    // the program a tick and its exit pause.
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << status;
}

// A click on a dialog that did not open fails the test and clicks nothing.
TEST(EndToEnd, AClickOnAWindowThatIsNotThereFailsTheTest) {
    LiveProgram program;
    ::testing::TestPartResultArray failures;
    {
        const ::testing::ScopedFakeTestPartResultReporter intercept(
            ::testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &failures);
        program.Click(0);
        program.ClickAt(0, 1, 1);
    }
    EXPECT_EQ(failures.size(), 2);
}

class ExampleScenario : public ::testing::TestWithParam<std::string> {};

TEST_P(ExampleScenario, PlaysToItsEndWithoutError) {
    const Scenario scenario = LoadScenario(std::string(ZAM_SOURCE_DIR "/examples/") + GetParam() + ".scenario");
    // The client refuses a locale that is not installed, and under "C" the program could
    // not show the example's texts anyway.
    if (!scenario.locale.empty() && !LocaleInstalled(scenario.locale.c_str())) {
        GTEST_SKIP() << "locale " << scenario.locale << " is not installed";
    }
    LiveProgram program;
    program.Start(scenario);
    program.Play(scenario);
    EXPECT_EQ(program.CloseAndWait(), 0);
}

std::vector<std::string> Examples() {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(ZAM_SOURCE_DIR "/examples")) {
        if (entry.path().extension() == ".scenario") names.push_back(entry.path().stem().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

INSTANTIATE_TEST_SUITE_P(Examples, ExampleScenario, ::testing::ValuesIn(Examples()),
                         [](const ::testing::TestParamInfo<std::string>& info) { return info.param; });

}  // namespace
