#include "tests/support/ForkedCheck.h"

#include "tests/support/ChildProcess.h"

int RunInForkedChild(const std::function<int()>& body, std::chrono::milliseconds timeout) {
    ChildProcess child;
    if (!child.Fork(body)) return kForkedCheckTimedOut;
    return child.WaitForExit(timeout).value_or(kForkedCheckTimedOut);
}
