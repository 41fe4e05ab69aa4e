#include "app/Exit.h"

#include <cstdio>
#include <cstdlib>

#include "app/DialogCalls.h"
#include "pipe/Sleep.h"

namespace {

ExitFunction testEnding = nullptr;

// The pause, then the exit; what both endings share.
void EndProcess(int status, const char* reason) {
    if (testEnding != nullptr) {
        testEnding(status, reason);
        return;
    }
    // Lets the writer thread send what was queued just before.
    MilliSecondSleep(2000);
    // The pipe's threads are still running and may be inside the queues or
    // the thread registry: end without running the destructors of globals,
    // which they could otherwise meet half torn down.
    std::fflush(nullptr);
    std::_Exit(status);
}

}  // namespace

void SetExitFunctionForTesting(ExitFunction ending) {
    testEnding = ending;
}

void ExitCleanup(int status, const char* reason) {
    WiredDialogCalls().DestroyApplicationContext();
    EndProcess(status, reason);
}

void ExitCleanupFromErrorHandler(int status, const char* reason) {
    EndProcess(status, reason);
}
