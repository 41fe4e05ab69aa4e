// zam-client as a process, against stand-in programs written as shell
// scripts: what it says and how it ends when the program misbehaves, and that
// it works with its own standard descriptors closed.

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "protocol/Documents.h"
#include "protocol/UIReports.h"
#include "tests/support/ForkedCheck.h"
#include "tests/support/Sandbox.h"

namespace {

namespace fs = std::filesystem;

// A sandbox that also writes the stand-in programs and scenarios.
class TempDir : public Sandbox {
public:
    std::string Write(const std::string& name, const std::string& text, bool executable = false) const {
        std::ofstream(Path(name)) << text;
        if (executable) fs::permissions(Path(name), fs::perms::owner_all);
        return Path(name);
    }
    std::string Read(const std::string& name) const {
        std::ifstream in(Path(name), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    }
};

// printf text for the payload behind its 4-byte little-endian length.
std::string PrintfFrame(const std::string& payload, std::uint32_t length) {
    std::string bytes;
    for (int shift = 0; shift < 32; shift += 8) bytes.push_back(static_cast<char>((length >> shift) & 0xFF));
    std::string text;
    char octal[8];
    for (const unsigned char c : bytes + payload) {
        std::snprintf(octal, sizeof octal, "\\%03o", c);
        text += octal;
    }
    return "printf '" + text + "'\n";
}

std::string Ready() {
    const std::string ready = ConvertToXML(ReadyForData{}).Str();
    return PrintfFrame(ready, static_cast<std::uint32_t>(ready.size()));
}

// Standard output into the file "stdout"; 0 and 1 closed; 0 and 1 on
// /dev/null; or, besides "stdout", standard input from the file "input".
enum class Standard { File, Closed, DevNull, Input };

struct Ended {
    int status;  // kForkedCheckTimedOut while it still runs after its limit
    std::string output, errors;
};

// Runs zam-client to its end, standard error into the file "stderr", with
// DISPLAY=:97 (no stand-in opens it). Every case here but the one played at
// --speed ends within a second or two; `limit` only keeps a hang from passing.
Ended RunClient(const TempDir& dir, const std::vector<std::string>& arguments, Standard standard = Standard::File,
                std::chrono::seconds limit = std::chrono::seconds(10)) {
    std::vector<char*> argv{const_cast<char*>(ZAM_CLIENT_BINARY)};
    for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    const std::string out = dir.Path("stdout"), err = dir.Path("stderr"), input = dir.Path("input");
    const int status = RunInForkedChild([&] {
        dup2(open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600), 2);
        setenv("DISPLAY", ":97", 1);
        if (standard == Standard::Closed) {
            close(0);
            close(1);
        } else if (standard == Standard::DevNull) {
            dup2(open("/dev/null", O_RDWR | O_CLOEXEC), 0);
            dup2(0, 1);
        } else {
            dup2(open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600), 1);
        }
        if (standard == Standard::Input) dup2(open(input.c_str(), O_RDONLY | O_CLOEXEC), 0);
        execv(ZAM_CLIENT_BINARY, argv.data());
        return 127;
    }, limit);
    return {status, fs::exists(out) ? dir.Read("stdout") : "", dir.Read("stderr")};
}

struct Misbehaviour {
    const char* name;
    std::string script;
    const char* message;
};

TEST(ZamClient, EndsWithAClearMessageWhenTheProgramMisbehaves) {
    const std::string garbage = "certainly not a document";
    const Misbehaviour cases[] = {
        {"no readiness", "exec sleep 30\n", "sent no ReadyForData within 1 s"},
        {"oversized frame", Ready() + PrintfFrame("", 2097153) + "exec sleep 30\n", "malformed frame"},
        {"unreadable document", Ready() + PrintfFrame(garbage, garbage.size()) + "exec sleep 30\n",
         "cannot be read"},
        {"ends early", Ready() + "head -c 1 >/dev/null\nexit 3\n", "ended before the client closed the pipe (exit status 3)"},
        {"no display", Ready() + "head -c 1 >/dev/null\nexit 255\n",
         "(exit status 255: the program could not open the display \":97\", or the X server reported an error"},
        {"cut frame", Ready() + PrintfFrame("<a>", 10) + "head -c 1 >/dev/null\n", "ended inside a frame"},
        {"not even started", "", "cannot run"},
    };
    for (const Misbehaviour& c : cases) {
        SCOPED_TRACE(c.name);
        TempDir dir;
        const std::string ui = c.script.empty() ? dir.Path("missing") : dir.Write("ui", "#!/bin/sh\n" + c.script, true);
        const std::string scenario = dir.Write("s.scenario", "at 5s close\n");
        const Ended ended = RunClient(dir, {"--ui", ui, "--ready-timeout", "1", "--base-directory", dir.Path("base"),
                                            scenario});
        EXPECT_EQ(ended.status, 1);
        EXPECT_NE(ended.errors.find(c.message), std::string::npos) << ended.errors;
        EXPECT_FALSE(fs::exists(dir.Path("base"))) << "a base directory it made stays behind";
    }
}

TEST(ZamClient, WorksWithItsOwnStandardDescriptorsClosedOrOnDevNull) {
    for (const Standard standard : {Standard::Closed, Standard::DevNull}) {
        TempDir dir;
        // Exits 0 once the client closes the pipe, as the program does.
        const std::string ui = dir.Write("ui", "#!/bin/sh\n" + Ready() + "exec cat 3>&1 >/dev/null\n", true);
        const std::string scenario = dir.Write("s.scenario", "at 0s action id=1 title=x\nat 100ms close\n");
        const Ended ended = RunClient(dir, {"--ui", ui, scenario}, standard);
        EXPECT_EQ(ended.status, 0) << ended.errors;
        EXPECT_EQ(ended.errors, "");
    }
}

TEST(ZamClient, InteractiveCommandsBecomeDocumentsUntilTheEndOfInput) {
    TempDir dir;
    const std::string ui = dir.Write("ui", "#!/bin/sh\n" + Ready() + "exec cat 3>&1 >" + dir.Path("received") + "\n", true);
    dir.Write("input", "action id=61 title=\"Hi there\"\nfly away\nquiet-start end=+1m\n");
    const Ended ended = RunClient(dir, {"--ui", ui, "-i"}, Standard::Input);
    EXPECT_EQ(ended.status, 0) << ended.errors;
    EXPECT_NE(ended.output.find(">> ActionRequest id=61"), std::string::npos) << ended.output;
    EXPECT_NE(ended.errors.find("unknown command \"fly\""), std::string::npos) << ended.errors;
    const std::string received = dir.Read("received");
    EXPECT_NE(received.find("<Title>Hi there</Title>"), std::string::npos);
    EXPECT_NE(received.find("<QuietModeStart>"), std::string::npos);
}

struct Refusal {
    const char* name;
    std::string scenario;
    bool fullBaseDirectory;
    int status;
    std::string message;  // "SCENARIO" stands for the scenario's path
};

TEST(ZamClient, RefusesWhatCannotWorkBeforeStartingAnything) {
    const Refusal cases[] = {
        {"full base directory", "at 0s close\n", true, 1, "it is not empty"},
        {"bad line", "# first\nat 1s action id=x\n", false, 2, "SCENARIO:2: \"x\" is not an ID"},
        {"missing locale", "locale xx_YY.UTF-8\nat 0s close\n", false, 1,
         "the locale \"xx_YY.UTF-8\" is not installed; generate it as root with: "
         "localedef -i xx_YY -f UTF-8 xx_YY.UTF-8"},
    };
    for (const Refusal& c : cases) {
        SCOPED_TRACE(c.name);
        TempDir dir;
        // Leaves a trace if anything starts it.
        const std::string ui = dir.Write("ui", "#!/bin/sh\ntouch " + dir.Path("started") + "\n", true);
        std::vector<std::string> arguments{"--ui", ui};
        std::string kept;
        if (c.fullBaseDirectory) {
            fs::create_directory(dir.Path("full"));
            kept = dir.Write("full/keep.txt", "");
            arguments.insert(arguments.end(), {"--base-directory", dir.Path("full")});
        }
        const std::string scenario = dir.Write("s.scenario", c.scenario);
        arguments.push_back(scenario);
        const Ended ended = RunClient(dir, arguments);
        EXPECT_EQ(ended.status, c.status);
        std::string message = c.message;
        if (message.rfind("SCENARIO", 0) == 0) message.replace(0, 8, scenario);
        EXPECT_NE(ended.errors.find(message), std::string::npos) << ended.errors;
        EXPECT_FALSE(fs::exists(dir.Path("started")));
        if (!kept.empty()) {
            EXPECT_TRUE(fs::exists(kept));
        }
    }
}

// Seconds since midnight of the transcript line that contains `marker`; -1 without one.
double StampOf(const std::string& transcript, const std::string& marker) {
    const std::size_t at = transcript.find(marker);
    if (at == std::string::npos) return -1;
    const std::size_t line = transcript.rfind('\n', at) == std::string::npos ? 0 : transcript.rfind('\n', at) + 1;
    int hours = 0, minutes = 0;
    double seconds = 0;
    if (std::sscanf(transcript.c_str() + line, "%d:%d:%lf", &hours, &minutes, &seconds) != 3) return -1;
    return hours * 3600 + minutes * 60 + seconds;
}

TEST(ZamClient, PlaysStepsAndWaitsFasterAtASpeedFactor) {
    TempDir dir;
    const std::string ui = dir.Write("ui", "#!/bin/sh\n" + Ready() + "exec cat 3>&1 >" + dir.Path("received") + "\n", true);
    const std::string scenario = dir.Write("s.scenario",
                                           "at 65s action id=1 title=first\n"
                                           "at 125s action id=2 title=second\n"
                                           "at 125s expect RemindTime within=30s\n");
    const Ended ended = RunClient(dir, {"--ui", ui, "--speed", "10", scenario}, Standard::File, std::chrono::seconds(40));
    EXPECT_EQ(ended.status, 1);
    EXPECT_NE(ended.errors.find("no RemindTime came within 30 s (3 s at --speed 10)"), std::string::npos)
        << ended.errors;
    const double first = StampOf(ended.output, ">> ActionRequest id=1"),
                 second = StampOf(ended.output, ">> ActionRequest id=2");
    ASSERT_TRUE(first >= 0 && second >= 0) << ended.output;
    // 60 s of the scenario, a tenth of it; across midnight the day wraps.
    EXPECT_NEAR(std::fmod(second - first + 86400, 86400), 6.0, 0.25) << ended.output;
}

}  // namespace
