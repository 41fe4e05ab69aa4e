#pragma once

// Process-wide changes a check needs (setuid, setlocale, an X error that
// ends the process) made in a forked copy of the test, so the test program
// itself is left as it was.

#include <chrono>
#include <functional>

// What RunInForkedChild returns for a child still running after its time-out
// (it is killed and reaped then).
constexpr int kForkedCheckTimedOut = -1000;

// Runs `body` in a forked child that ends with _exit(body()); returns its
// exit status, minus the signal's number after a signal, or
// kForkedCheckTimedOut (an exception out of the body aborts the child).
// Failed expectations in the child print there; a body that uses them ends
// with `::testing::Test::HasFailure() ? 1 : 0`.
int RunInForkedChild(const std::function<int()>& body, std::chrono::milliseconds timeout);
