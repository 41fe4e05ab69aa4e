// The real program as the client starts it, through real pipes. Its command
// line: "--version" and "--help" alone are answered on standard output before
// the pipe starts; everything else starts the pipe as usual, and a terminal on
// standard input earns one line of explanation on standard error. Its
// environment has no DISPLAY, so after initialisation it ends on the failed display.

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ZAMVersion.h"
#include "protocol/Documents.h"
#include "protocol/UIReports.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Sandbox.h"

namespace {

constexpr auto kBound = std::chrono::seconds(10);
const std::vector<std::string> kEnvironment{"PATH=/usr/bin:/bin", "LC_ALL=C"};

std::string Contents(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

// Starts the program with `arguments`, standard error into the file "err" of
// `sandbox` and the test's descriptors `more` (child -> test) on top.
bool Start(ChildProcess& program, const Sandbox& sandbox, const std::vector<std::string>& arguments,
           ChildProcess::Descriptors more = {}) {
    more[2] = open(sandbox.Path("err").c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    const bool started = more[2] >= 0 && program.Exec(ZAM_CLIENTUI_BINARY, kEnvironment, arguments, more);
    close(more[2]);
    return started;
}

std::string Ready() { return std::string(ConvertToXML(ReadyForData()).View()); }

TEST(CommandLine, VersionAndHelpAloneAnswerOnStandardOutputAndExit0) {
    const struct {
        const char* argument;
        std::string expected;  // the start of standard output
    } rows[] = {{"--version", std::string("ZAMClientUI " ZAM_VERSION "\n")}, {"--help", "usage: ZAMClientUI"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.argument);
        const Sandbox sandbox;
        const int out = open(sandbox.Path("out").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
        ChildProcess program;
        ASSERT_TRUE(Start(program, sandbox, {row.argument}, {{1, out}}));
        close(out);
        EXPECT_EQ(program.WaitForExit(kBound), 0);
        const std::string printed = Contents(sandbox.Path("out"));
        EXPECT_EQ(printed.rfind(row.expected, 0), 0u) << printed;
        EXPECT_EQ(printed.find("<?xml"), std::string::npos);
        EXPECT_EQ(Contents(sandbox.Path("err")), "");
    }
}

// Anything else is the toolkit's, read only after the initialisation: the
// program starts its pipe, announces itself first, and says nothing else.
TEST(CommandLine, AnyOtherCommandLineStartsThePipe) {
    const std::vector<std::vector<std::string>> rows{
        {"--versions"}, {"--version", "--help"}, {"--help", "-display", ":0"}, {"-version"}};
    for (const auto& arguments : rows) {
        SCOPED_TRACE(arguments.front() + " (" + std::to_string(arguments.size()) + " arguments)");
        const Sandbox sandbox;
        ChildProcess program;
        ASSERT_TRUE(Start(program, sandbox, arguments));
        EXPECT_EQ(program.ReadFrame(kBound), Ready());
        EXPECT_EQ(Contents(sandbox.Path("err")), "");
        program.Stop(std::chrono::seconds(1));
    }
}

TEST(CommandLine, ATerminalOnStandardInputGetsOneLineThenThePipeStarts) {
    const int master = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_GE(master, 0);
    ASSERT_EQ(grantpt(master), 0);
    ASSERT_EQ(unlockpt(master), 0);
    const int terminal = open(ptsname(master), O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_GE(terminal, 0);
    const Sandbox sandbox;
    ChildProcess program;
    ASSERT_TRUE(Start(program, sandbox, {}, {{0, terminal}}));
    close(terminal);
    EXPECT_EQ(program.ReadFrame(kBound), Ready());
    const std::string notice = Contents(sandbox.Path("err"));
    EXPECT_EQ(std::count(notice.begin(), notice.end(), '\n'), 1) << notice;
    EXPECT_EQ(notice.back(), '\n');
    EXPECT_NE(notice.find("zam-client"), std::string::npos) << notice;
    // Still waiting for the client: the terminal is its input now.
    EXPECT_FALSE(program.WaitForExit(std::chrono::milliseconds(1500)));
    program.Stop(std::chrono::seconds(1));
    close(master);
}

// A poll, then the two-second exit pause; what initialisation writes is checked
// in-process and end to end.
TEST(Process, EndsAfterTheClientClosesOrWithoutADisplayOnInitialisation) {
    for (const bool initialise : {false, true}) {
        SCOPED_TRACE(initialise);
        const Sandbox sandbox;
        ChildProcess program;
        ASSERT_TRUE(Start(program, sandbox, {}));
        EXPECT_EQ(program.ReadFrame(kBound), Ready());
        if (initialise) {
            EXPECT_TRUE(program.WriteFrame(InitializationDocument(sandbox.Path("base"))));
        } else {
            program.CloseInput();
        }
        EXPECT_EQ(program.WaitForExit(kBound), initialise ? 255 : 0);  // the X side ends it with -1
    }
}

}  // namespace
