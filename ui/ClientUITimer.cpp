#include "ui/ClientUITimer.h"

#include "app/Tick.h"
#include "ui/DialogPlacement.h"
#include "ui/XGlobals.h"

namespace {

// Adds the next time-out when the tick leaves, on every return and throw, so
// that no path through the tick can stop the clock. Not once the application
// context has gone (the process is ending).
class TickRearmGuard {
public:
    TickRearmGuard() = default;
    TickRearmGuard(const TickRearmGuard&) = delete;
    TickRearmGuard& operator=(const TickRearmGuard&) = delete;
    ~TickRearmGuard() { StartClientUITick(); }
};

}  // namespace

void StartClientUITick() {
    if (app_context != nullptr) XtAppAddTimeOut(app_context, kTickMilliseconds, ClientUITick, nullptr);
}

void ClientUITick(XtPointer, XtIntervalId*) {
    const TickRearmGuard rearm;
    RunClientUITick();
    KeepDialogsOnMonitors();
}
