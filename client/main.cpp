// zam-client: a sample client for ZAMClientUI. It starts the program, plays a
// scenario or typed commands to it, and prints what the program reports.

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>

#include "base/Exceptions.h"
#include "client/Session.h"

namespace {

const char kUsage[] =
    "usage: zam-client [options] SCENARIO\n"
    "       zam-client [options] -i [SCENARIO]\n"
    "Starts ZAMClientUI, initialises it, plays SCENARIO and/or commands typed on\n"
    "standard input (-i), and prints every document the program sends back.\n"
    "  -i, --interactive       read commands from standard input (\"help\" lists them)\n"
    "  --ui PATH               the program to start (default: ZAMClientUI beside zam-client)\n"
    "  --base-directory DIR    where the program writes its files; must be new or empty\n"
    "                          (default: a fresh temporary directory, removed at exit)\n"
    "  --raw                   print the XML documents instead of one line per record\n"
    "  --ready-timeout SECONDS how long to wait for ReadyForData (default 10)\n"
    "  --speed FACTOR          play the scenario FACTOR times as fast: \"at\" times and\n"
    "                          \"within\" waits are divided by it (default 1); the times\n"
    "                          sent to the program are not\n"
    "  --at-mark COMMAND       run COMMAND with /bin/sh at every \"mark\" step\n"
    "                          (ZAM_MARK holds the mark's name)\n"
    "Exit status: 0 when the program ended with 0; 1 when it failed, ended early or\n"
    "did not answer; 2 for a bad command line or scenario; 128+N after signal N.\n";

int interruptWrite = -1;
volatile sig_atomic_t interruptSignal = 0;

void OnSignal(int number) {
    interruptSignal = number;
    const char byte = 1;
    const int saved = errno;
    (void)!write(interruptWrite, &byte, 1);
    errno = saved;
}

// Descriptors 0, 1 and 2 closed at start would be handed out again by the
// next open or pipe, and the transcript would go into the program's pipe.
void OpenStandardDescriptors() {
    for (int fd = 0; fd <= 2; ++fd) {
        if (fcntl(fd, F_GETFD) < 0 && errno == EBADF) {
            const int null = open("/dev/null", O_RDWR);
            if (null >= 0 && null != fd) {
                dup2(null, fd);
                close(null);
            }
        }
    }
}

std::string DefaultProgram() {
    char self[4096];
    const ssize_t length = readlink("/proc/self/exe", self, sizeof self - 1);
    if (length <= 0) return "ZAMClientUI";
    std::string path(self, static_cast<std::size_t>(length));
    return path.substr(0, path.rfind('/') + 1) + "ZAMClientUI";
}

[[noreturn]] void Usage(const std::string& problem) {
    std::fprintf(stderr, "zam-client: %s\n%s", problem.c_str(), kUsage);
    std::exit(2);
}

}  // namespace

int main(int argc, char** argv) {
    OpenStandardDescriptors();
    // A program that dies while we write must give a clear message, not a
    // silent death by SIGPIPE.
    signal(SIGPIPE, SIG_IGN);
    std::setlocale(LC_ALL, "");

    SessionOptions options;
    options.program = DefaultProgram();
    bool interactive = false;
    std::string scenarioPath;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        const auto value = [&]() -> std::string {
            if (i + 1 >= argc) Usage(argument + " needs a value");
            return argv[++i];
        };
        if (argument == "-i" || argument == "--interactive") {
            interactive = true;
        } else if (argument == "--ui") {
            options.program = value();
        } else if (argument == "--base-directory") {
            options.baseDirectory = value();
        } else if (argument == "--raw") {
            options.raw = true;
        } else if (argument == "--ready-timeout") {
            const std::optional<Milliseconds> timeout = ParseDuration(value());
            if (!timeout) Usage("--ready-timeout takes a number of seconds");
            options.readyTimeout = *timeout;
        } else if (argument == "--speed") {
            const std::string text = value();
            char* end = nullptr;
            const double speed = std::strtod(text.c_str(), &end);
            if (text.empty() || *end != '\0' || !(speed > 0.0) || !std::isfinite(speed)) {
                Usage("--speed takes a factor above 0, such as 10 or 0.5");
            }
            options.speed = speed;
        } else if (argument == "--at-mark") {
            options.markCommand = value();
        } else if (argument == "-h" || argument == "--help") {
            std::fputs(kUsage, stdout);
            return 0;
        } else if (argument.size() > 1 && argument[0] == '-') {
            Usage("unknown option " + argument);
        } else if (scenarioPath.empty()) {
            scenarioPath = argument;
        } else {
            Usage("only one scenario at a time");
        }
    }
    if (scenarioPath.empty() && !interactive) Usage("give a scenario, or -i for typed commands");

    // Read and checked whole before anything starts.
    Scenario scenario;
    try {
        if (!scenarioPath.empty()) scenario = LoadScenario(scenarioPath);
    } catch (const ScenarioError& error) {
        std::fprintf(stderr, "zam-client: %s\n", error.Text().c_str());
        return 2;
    }

    int interrupt[2];
    if (pipe2(interrupt, O_CLOEXEC | O_NONBLOCK) != 0) {
        std::perror("zam-client: pipe");
        return 1;
    }
    interruptWrite = interrupt[1];
    struct sigaction action {};
    action.sa_handler = OnSignal;
    sigemptyset(&action.sa_mask);
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
    sigaction(SIGHUP, &action, nullptr);
    options.interruptFd = interrupt[0];
    options.environment = ProgramEnvironment();

    int status = 1;
    {
        Session session(options, std::cout);
        try {
            session.Start(scenario);
            session.Play(scenario);
            if (interactive) session.Interactive(0);
            const int exit = session.Finish();
            if (exit != 0) {
                std::fprintf(stderr, "zam-client: the program ended with %s\n",
                             DescribeExitStatus(exit, session.DisplayName()).c_str());
            } else {
                status = 0;
            }
        } catch (const ClientError& error) {
            std::fprintf(stderr, "zam-client: %s\n", error.message.c_str());
        } catch (const DebuggableException&) {
            std::fprintf(stderr, "zam-client: a document could not be written\n");
        }
        // The session's end stops the program; the base directory goes with it.
    }
    std::cout.flush();
    if (interruptSignal != 0) return 128 + interruptSignal;
    return status;
}
