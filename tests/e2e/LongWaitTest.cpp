// A scenario step beyond a minute, played at its real pace against the real
// program: one poll waits at most a minute, so the client must poll again
// until the step's time has come instead of taking the first time-out for it.

#include <chrono>

#include <gtest/gtest.h>

#include "tests/e2e/LiveProgram.h"

namespace {

TEST(LongWait, AStepAt70SecondsIsSentAfter70Seconds) {
    LiveProgram program;
    const Scenario scenario = ParseScenario("at 70s action id=1 title=Late\n", "late.scenario");
    program.Start(scenario);
    const auto before = std::chrono::steady_clock::now();
    program.Play(scenario);
    EXPECT_GE(std::chrono::steady_clock::now() - before, std::chrono::seconds(70));
    EXPECT_NE(program.WaitForActionDialog().shell, 0u);
    EXPECT_EQ(program.CloseAndWait(), 0);
}

}  // namespace
