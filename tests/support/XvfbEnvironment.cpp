#include "tests/support/XvfbEnvironment.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <thread>

namespace {

// The descriptor Xvfb writes its display number to, in the child.
constexpr int kDisplayFd = 3;
constexpr auto kStartTimeout = std::chrono::seconds(20);
constexpr auto kStopTimeout = std::chrono::seconds(5);

// Waits for the child to end, up to `timeout`; true once reaped.
bool ReapWithin(pid_t pid, std::chrono::milliseconds timeout) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    for (;;) {
        int status = 0;
        const pid_t done = waitpid(pid, &status, WNOHANG);
        if (done == pid || (done < 0 && errno != EINTR)) return true;
        if (std::chrono::steady_clock::now() >= deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

[[noreturn]] void ExecXvfb(int displayWrite) {
    if (dup2(displayWrite, kDisplayFd) < 0) _exit(127);
    const int devNull = open("/dev/null", O_RDWR);
    if (devNull >= 0) {
        dup2(devNull, 0);
        dup2(devNull, 1);
        dup2(devNull, 2);
    }
    char displayFd[] = {static_cast<char>('0' + kDisplayFd), '\0'};
    const char* argv[] = {"Xvfb",        "-nolisten",  "tcp",     "-noreset", "-screen", "0",
                          "1024x768x24", "-displayfd", displayFd, nullptr};
    // An explicit environment: nothing of the test's own (no DISPLAY, no
    // XAUTHORITY) reaches the server.
    char path[] = "PATH=/usr/local/bin:/usr/bin:/bin";
    char* environment[] = {path, nullptr};
    execve("/usr/bin/Xvfb", const_cast<char* const*>(argv), environment);
    _exit(127);
}

}  // namespace

bool XvfbServer::Start() {
    Stop();
    failure_.clear();
    int fds[2];
    if (pipe2(fds, O_CLOEXEC) != 0) {
        failure_ = "pipe2 failed";
        return false;
    }
    const pid_t pid = fork();
    if (pid < 0) {
        close(fds[0]);
        close(fds[1]);
        failure_ = "fork failed";
        return false;
    }
    if (pid == 0) ExecXvfb(fds[1]);
    close(fds[1]);
    pid_ = pid;
    owner_ = getpid();

    // Xvfb writes the number and a newline once it accepts connections.
    std::string number;
    const auto deadline = std::chrono::steady_clock::now() + kStartTimeout;
    while (number.empty() || number.back() != '\n') {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        if (left.count() <= 0) break;
        pollfd waitFor{fds[0], POLLIN, 0};
        const int ready = poll(&waitFor, 1, static_cast<int>(left.count()));
        if (ready < 0 && errno == EINTR) continue;
        if (ready <= 0) break;
        char buffer[16];
        const ssize_t got = read(fds[0], buffer, sizeof buffer);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) break;
        number.append(buffer, static_cast<std::size_t>(got));
    }
    close(fds[0]);
    if (number.size() < 2 || number.back() != '\n' || number.find_first_not_of("0123456789\n") != std::string::npos) {
        failure_ = "Xvfb did not report a display";
        Stop();
        return false;
    }
    number.pop_back();
    display_ = ":" + number;
    return true;
}

void XvfbServer::Stop() {
    if (pid_ <= 0) return;
    // A forked test child holds a copy of this object: only the process that
    // started the server may end it.
    if (getpid() == owner_) {
        kill(pid_, SIGTERM);
        if (!ReapWithin(pid_, kStopTimeout)) {
            kill(pid_, SIGKILL);
            ReapWithin(pid_, kStopTimeout);
        }
    }
    pid_ = -1;
    display_.clear();
}

void XvfbEnvironment::SetUp() {
    unsetenv("DISPLAY");
    ASSERT_TRUE(server_.Start()) << server_.Failure();
    setenv("DISPLAY", server_.DisplayName().c_str(), 1);
}

void XvfbEnvironment::TearDown() {
    unsetenv("DISPLAY");
    server_.Stop();
}

::testing::Environment* AddXvfbEnvironment() {
    return ::testing::AddGlobalTestEnvironment(new XvfbEnvironment);
}
