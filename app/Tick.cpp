#include "app/Tick.h"

#include <cstdint>

#include "actions/PendingActions.h"
#include "app/Attention.h"
#include "app/ClientLink.h"
#include "app/DialogCalls.h"
#include "app/Dispatch.h"
#include "app/Exit.h"
#include "app/Settings.h"
#include "protocol/UIReports.h"

namespace {

// A forced action is shown counting down once its deadline is this close.
constexpr std::int64_t kDeadlineNoticeSeconds = 300;

// Reports forced actions whose deadline has passed as taken (and drops them);
// true when the dialog must be redrawn, also for a countdown in its last
// five minutes.
bool HandleDeadlines(Instant now) {
    // Compared in whole seconds, the only ones the clock and the deadlines
    // have; unlike converting a deadline to an Instant this cannot throw.
    const std::int64_t nowSeconds = now.Microseconds() / kMicrosecondsPerSecond;
    const std::int64_t soonSeconds = nowSeconds + kDeadlineNoticeSeconds;
    bool changed = false;
    for (std::size_t i = 0; i < actions.size();) {
        const ActionRequest& action = actions[i];
        if (action.forceRun && action.deadline) {
            const std::int64_t deadline = action.deadline.Get().SecondsSinceEpoch();
            if (nowSeconds > deadline) {
                SendToClient(clientWriter, ActionTaken(action.id, false, false));
                actions.erase(actions.begin() + static_cast<std::ptrdiff_t>(i));
                changed = true;
                continue;
            }
            if (deadline < soonSeconds) changed = true;
        }
        ++i;
    }
    return changed;
}

// A countdown coming up asks for attention once per entry, however often the
// tick sees it, so the user who has looked is not asked again every second.
void AlertNewCountdowns(Instant now) {
    static DeadlineAlerts alerts;
    if (!alerts.Due(actions, now)) return;
    alerts.Alerted(actions, now);
    MarkActionRequestDialogUrgent();
}

}  // namespace

void RunClientUITick() {
    // Without a pipe (only in tests) there is nothing to watch.
    if (clientPipe != nullptr && clientPipe->Killed()) {
        ExitCleanup(0, "CLOSED");
        return;
    }
    ProcessMessagesFromClient();
    ProcessMessagesFromUI();
    if (!initialized) return;

    WiredDialogCalls().CreateHiddenWindowOnce();
    // Repeated every tick while it holds: showing a shown dialog is harmless.
    if (m_postponedTo < Instant::Now() && !actions.empty()) ShowActionDialog();
    RemoveTimedoutMessageDialogs();
    if (inQuietMode) return;

    if (HandleDeadlines(Instant::Now())) UpdateActionRequestDialog();
    AlertNewCountdowns(Instant::Now());
    FlushActionRequestDialog();
}
