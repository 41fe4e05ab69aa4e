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

#include <gtest/gtest.h>

#include "client/ClientDocuments.h"
#include "client/OpenDialogRequest.h"
#include "tests/e2e/LiveProgram.h"

#include <X11/Xlib.h>

namespace {

namespace fs = std::filesystem;

constexpr char kHiddenWindow[] = "ZAMClientUIHiddenWindow";

std::string Kinds(const std::vector<Report>& reports) {
    std::string kinds;
    for (const Report& report : reports) kinds += report.text + "; ";
    return kinds;
}

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
    std::string error;
    EXPECT_EQ(SendOpenRequest(program.DisplayName(), std::chrono::seconds(10), error), 1) << error;
    EXPECT_EQ(FileText(program.Files().Path("base/notes.txt")), "first line\n\x01\xff bytes");
    EXPECT_EQ(FileText(program.Files().Path("base/_brand.xlat")), "Cancel\tStop\n");
    EXPECT_EQ(program.CloseAndWait(), 0);
}

TEST(EndToEnd, ForcedDeadlineWaitsOutTheQuietPeriodThenIsReportedOnce) {
    LiveProgram program;
    program.Start();
    program.Send({"quiet-start end=+1h", "action id=31 title=Forced deadline=+0s force restart"});
    EXPECT_EQ(Kinds(program.ThreeTicks()), "");
    program.Send({"quiet-end"});
    const std::optional<Report> taken = program.WaitFor("ActionTaken", 31);
    ASSERT_TRUE(taken);
    EXPECT_FALSE(taken->cancel);
    EXPECT_EQ(Kinds(program.ThreeTicks()), "");
    EXPECT_EQ(program.CloseAndWait(), 0);
}

TEST(EndToEnd, RemovalBeforeTheDeadlineMeansNoReport) {
    LiveProgram program;
    program.Start();
    // In the same document as the action, and in the next one.
    program.Send({"action id=41 deadline=+1s force", "remove id=41 type=Action"});
    program.Send({"action id=42 deadline=+1s force"});
    program.Send({"remove id=42"});
    EXPECT_EQ(Kinds(program.ThreeTicks()), "");
    EXPECT_EQ(program.CloseAndWait(), 0);
}

TEST(EndToEnd, AMalformedDocumentDropsItsBatchAndTheNextIsHandled) {
    LiveProgram program;
    program.Start();
    // A bad ID before a valid forced action: the whole rest is dropped.
    std::string document = RecordsDocument({ParseCommand("action id=51 deadline=+0s force")}, Instant::Now());
    document.insert(document.find("<ClientToUI>") + 12, "<ActionRequest><ID>5x</ID></ActionRequest>");
    program.Client().SendDocument(document);
    EXPECT_EQ(Kinds(program.ThreeTicks()), "");
    program.Send({"action id=52 deadline=+0s force"});
    EXPECT_TRUE(program.WaitFor("ActionTaken", 52));
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
    const pid_t client = fork();
    if (client == 0) {
        dup2(out[1], 1);
        const std::string display = "DISPLAY=" + program.DisplayName();
        char* envp[] = {const_cast<char*>(display.c_str()), const_cast<char*>("PATH=/usr/bin:/bin"), nullptr};
        const std::string scenario = program.Files().Path("long.scenario");
        const std::string base = program.Files().Path("base");
        const char* argv[] = {ZAM_CLIENT_BINARY, "--ui", ZAM_CLIENTUI_BINARY, "--base-directory", base.c_str(),
                              scenario.c_str(), nullptr};
        execve(ZAM_CLIENT_BINARY, const_cast<char**>(argv), envp);
        _exit(127);
    }
    close(out[1]);
    std::string transcript;
    const auto until = std::chrono::steady_clock::now() + kCeiling;
    while (transcript.find("ReadyForData") == std::string::npos && std::chrono::steady_clock::now() < until) {
        pollfd readable{out[0], POLLIN, 0};
        char chunk[1024];
        if (poll(&readable, 1, 1000) <= 0) continue;
        const ssize_t got = read(out[0], chunk, sizeof chunk);
        if (got <= 0) break;
        transcript.append(chunk, static_cast<std::size_t>(got));
    }
    close(out[0]);
    ASSERT_NE(transcript.find("ReadyForData"), std::string::npos) << transcript;
    const std::size_t pid = transcript.find("(pid ");
    ASSERT_NE(pid, std::string::npos) << transcript;
    const pid_t ui = static_cast<pid_t>(std::stol(transcript.substr(pid + 5)));
    const int ended = static_cast<int>(syscall(SYS_pidfd_open, ui, 0));
    ASSERT_GE(ended, 0);
    kill(client, SIGKILL);
    ASSERT_EQ(waitpid(client, nullptr, 0), client);
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

class ExampleScenario : public ::testing::TestWithParam<std::string> {};

TEST_P(ExampleScenario, PlaysToItsEndWithoutError) {
    const Scenario scenario = LoadScenario(std::string(ZAM_SOURCE_DIR "/examples/") + GetParam() + ".scenario");
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
