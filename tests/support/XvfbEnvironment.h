#pragma once

// A private X server for the display tests. Tests never use a display they
// inherit: each run starts its own Xvfb and learns its number from the server
// itself (-displayfd), so no display number is ever guessed.

#include <sys/types.h>

#include <string>
#include <vector>

#include <gtest/gtest.h>

// One Xvfb process, owned by the process that started it (a forked child that
// inherits the object never stops the server).
class XvfbServer {
public:
    XvfbServer() = default;
    ~XvfbServer() { Stop(); }
    XvfbServer(const XvfbServer&) = delete;
    XvfbServer& operator=(const XvfbServer&) = delete;

    // Starts the server with the usual options and `extraArguments`; false
    // (with the reason in Failure()) when it did not report a display.
    bool Start(const std::vector<std::string>& extraArguments = {});
    // SIGTERM, then SIGKILL if it has not ended within a few seconds.
    void Stop();

    bool Running() const { return pid_ > 0; }
    pid_t Pid() const { return pid_; }
    // ":N".
    const std::string& DisplayName() const { return display_; }
    const std::string& Failure() const { return failure_; }

private:
    pid_t pid_ = -1;
    pid_t owner_ = -1;
    std::string display_;
    std::string failure_;
};

// Starts one server for the whole test program and points DISPLAY at it.
// DISPLAY is cleared first, so a server that fails to start leaves the tests
// without a display rather than on the user's. Test discovery (listing the
// tests) never runs an environment, so it never starts a server.
class XvfbEnvironment : public ::testing::Environment {
public:
    void SetUp() override;
    void TearDown() override;

    // The running environment's server; null outside one.
    static XvfbServer* Server();

private:
    XvfbServer server_;
};

// Registers the environment; use in one test file of a program:
//   static ::testing::Environment* const xvfb = AddXvfbEnvironment();
::testing::Environment* AddXvfbEnvironment();
