#include "tests/support/Xvfb.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>

namespace {

// The descriptor Xvfb writes its display number to, in the child.
constexpr int kDisplayFd = 3;
constexpr auto kStartTimeout = std::chrono::seconds(20);
constexpr auto kStopGrace = std::chrono::seconds(5);

class XvfbEnvironment : public ::testing::Environment {
public:
    void SetUp() override {
        unsetenv("DISPLAY");
        ASSERT_TRUE(server_.Start()) << server_.Failure();
        setenv("DISPLAY", server_.DisplayName().c_str(), 1);
    }
    void TearDown() override {
        unsetenv("DISPLAY");
        server_.Stop();
    }

private:
    XvfbServer server_;
};

}  // namespace

bool XvfbServer::Start(const std::string& screen) {
    Stop();
    failure_.clear();
    int fds[2];
    if (pipe2(fds, O_CLOEXEC) != 0) {
        failure_ = "pipe2 failed";
        return false;
    }
    const int devNull = open("/dev/null", O_RDWR | O_CLOEXEC);
    // SIGTERM, not SIGKILL: the server then removes its lock file and socket.
    server_.SetDeathSignal(SIGTERM);
    // An explicit environment: nothing of the test's own (no DISPLAY, no
    // XAUTHORITY) reaches the server.
    const bool started = devNull >= 0 && server_.Exec("/usr/bin/Xvfb", {"PATH=/usr/local/bin:/usr/bin:/bin"},
                                                      {"-nolisten", "tcp", "-noreset", "-screen", "0", screen,
                                                       "-displayfd", std::to_string(kDisplayFd)},
                                                      {{0, devNull}, {1, devNull}, {2, devNull}, {kDisplayFd, fds[1]}});
    if (devNull >= 0) close(devNull);
    close(fds[1]);
    // Xvfb writes the number and a newline once it accepts connections.
    std::string number = started ? ReadUntil(fds[0], "\n", kStartTimeout) : "";
    close(fds[0]);
    if (number.size() < 2 || number.back() != '\n' || number.find_first_not_of("0123456789\n") != std::string::npos) {
        failure_ = started ? "Xvfb did not report a display" : "Xvfb could not be started";
        Stop();
        return false;
    }
    number.pop_back();
    display_ = ":" + number;
    return true;
}

void XvfbServer::Stop() {
    server_.Stop(kStopGrace);
    display_.clear();
}

::testing::Environment* AddXvfbEnvironment() {
    return ::testing::AddGlobalTestEnvironment(new XvfbEnvironment);
}
