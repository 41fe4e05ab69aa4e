#pragma once

// A private X server for the display tests. Tests never use a display they
// inherit: each run starts its own Xvfb and learns its number from the server
// itself (-displayfd), so no display number is ever guessed.

#include <string>

#include <gtest/gtest.h>

#include "tests/support/ChildProcess.h"

constexpr char kDefaultScreen[] = "1024x768x24";

// One Xvfb process, owned by the process that started it (a forked child that
// inherits the object never stops the server). The server ends with the
// thread that started it, also when the test crashes or is killed.
class XvfbServer {
public:
    XvfbServer() = default;
    ~XvfbServer() { Stop(); }
    XvfbServer(const XvfbServer&) = delete;
    XvfbServer& operator=(const XvfbServer&) = delete;

    // False (with the reason in Failure()) when the server did not report a
    // display. `screen` is Xvfb's WIDTHxHEIGHTxDEPTH.
    bool Start(const std::string& screen = kDefaultScreen);
    // SIGTERM, then SIGKILL if it has not ended within a few seconds.
    void Stop();

    // ":N".
    const std::string& DisplayName() const { return display_; }
    pid_t Pid() const { return server_.Pid(); }
    const std::string& Failure() const { return failure_; }

private:
    ChildProcess server_;
    std::string display_;
    std::string failure_;
};

// Starts one server for the whole test program and points DISPLAY at it.
// DISPLAY is cleared first, so a server that fails to start leaves the tests
// without a display rather than on the user's. Listing the tests never runs
// an environment, so it never starts a server.
//   static ::testing::Environment* const xvfb = AddXvfbEnvironment();
::testing::Environment* AddXvfbEnvironment();
