#include "app/Dispatch.h"

#include <memory>
#include <utility>

#include "actions/PendingActions.h"
#include "app/ClientLink.h"
#include "app/DialogCalls.h"
#include "app/Initialization.h"
#include "app/Settings.h"
#include "base/time/TimeObject.h"
#include "base/xml/SimpleXML.h"
#include "base/xml/XMLElement.h"
#include "pipe/FiFoQueue.h"
#include "protocol/ActionRequest.h"
#include "protocol/ClientRequests.h"
#include "protocol/InitializationInfo.h"
#include "protocol/UIReports.h"

bool takeAllPending = false;
std::size_t takeAllCursor = 0;

namespace {

constexpr std::int64_t kMicrosecondsPerMinute = 60 * kMicrosecondsPerSecond;

// The messages that followed an applied InitializationInfo in its batch; they
// are handled by the next call, once the program is initialised. Never
// destroyed, like the queues it is filled from.
FiFoQueue<UIMessage>& PendingClientMessages() {
    static FiFoQueue<UIMessage>* pending = new FiFoQueue<UIMessage>;
    return *pending;
}

void ShowActionDialog() {
    ShowActionRequestDialog(false, m_remindInterval, m_snoozable);
}

// ---- One handler per client element ----

void OnActionRequest(const XMLElement& element) {
    ActionRequest request;
    XMLSerialize(element, request);
    actions.push_back(request);
    UpdateActionRequestDialog();
    // Even while snoozed: a new action always brings the dialog up.
    ShowActionDialog();
}

void OnRemoveRequest(const XMLElement& element) {
    RemoveRequest request;
    XMLLoad(element, request);
    if (request.type == RemoveRequest::Action || request.type == RemoveRequest::All) {
        RemoveAction(request.id);
        UpdateActionRequestDialog();
    }
    if (request.type == RemoveRequest::Message || request.type == RemoveRequest::All) {
        RemoveMessageDialog(request.id);
    }
}

void OnMessageRequest(const XMLElement& element) {
    MessageRequest request;
    XMLSerialize(element, request);
    ShowMessageDialog(request);
}

void OnQuietModeStart(const XMLElement& element) {
    // Before decoding: a quiet period the program cannot read is still quiet.
    inQuietMode = true;
    QuietModeStart period;
    XMLSerialize(element, period);
    if (IsActionRequestDialogShown()) {
        ShowQuietModeDialog(Instant(period.startTime), Instant(period.endTime));
        DisableActionRequestDialog();
    }
}

void OnQuietModeEnd(const XMLElement& element) {
    inQuietMode = false;
    QuietModeEnd end;
    XMLSerialize(element, end);
    RemoveQuietModeDialog();
    if (IsActionRequestDialogShown()) {
        UpdateActionRequestDialog();
        EnableActionRequestDialog();
    }
}

enum class DocumentOutcome { Handled, HoldBackRest };

// Handles one document's messages in order. An applied InitializationInfo
// ends the document there: what follows it in the same document is dropped.
DocumentOutcome HandleDocument(const UIMessage& message) {
    const std::unique_ptr<XMLElement> root = SimpleXML::Parse(message.text.Ref());
    if (!root) throw NoRootElement();
    for (const XMLElement& child : root->Children()) {
        const UStringRef<UTF8> name = child.Name().Ref();
        if (name == "ActionRequest") {
            OnActionRequest(child);
        } else if (name == "InitializationInfo") {
            if (initialized) continue;
            InitializationInfo info;
            XMLSerialize(child, info);
            ApplyInitializationInfo(info);
            return DocumentOutcome::HoldBackRest;
        } else if (name == "RemoveRequest") {
            OnRemoveRequest(child);
        } else if (name == "MessageRequest") {
            OnMessageRequest(child);
        } else if (name == "QuietModeStart") {
            OnQuietModeStart(child);
        } else if (name == "QuietModeEnd") {
            OnQuietModeEnd(child);
        }
    }
    return DocumentOutcome::Handled;
}

// ---- User commands ----

std::size_t FindAction(unsigned long long id) {
    for (std::size_t i = 0; i < actions.size(); ++i) {
        if (actions[i].id == id) return i;
    }
    return actions.size();
}

// Walks from the cursor, stopping at the next action that shows a
// confirmation (cursor past it). True when the walk reached the end.
bool WalkTakeAll() {
    while (takeAllCursor < actions.size()) {
        const std::size_t position = takeAllCursor++;
        if (ConfirmIfRequired(position)) {
            takeAllPending = true;
            return false;
        }
    }
    return true;
}

void OnTakeAll() {
    takeAllPending = false;
    takeAllCursor = 0;
    if (WalkTakeAll()) ReportAllActionsTaken();
}

void OnCancelAction(const UICommand& command) {
    const std::size_t position = FindAction(command.id);
    if (position < actions.size()) ReportActionTaken(position, true);
    EnableActionRequestDialog();
}

void OnTakeAction(const UICommand& command) {
    const std::size_t position = FindAction(command.id);
    if (position == actions.size()) {
        EnableActionRequestDialog();
    } else if (actions[position].preActionMessage) {
        // A single confirmation: its ConfirmAccepted takes only this action.
        ShowConfirmationRequestDialog(command.id);
    } else {
        ReportActionTaken(position, false);
        EnableActionRequestDialog();
    }
}

void OnSnooze(const UICommand& command) {
    if (actions.empty()) return;
    const SnoozeChoice choice = ChooseSnooze(command.minutes, command.seconds);
    PostponeUntil(Instant::Now() + choice.delay);
    m_remindInterval = choice.interval;
    SendToClient(clientWriter, RemindInterval(choice.interval));
}

void OnConfirmAccepted(const UICommand& command) {
    if (!takeAllPending) {
        const std::size_t position = FindAction(command.id);
        if (position < actions.size()) ReportActionTaken(position, false);
        EnableActionRequestDialog();
        return;
    }
    if (WalkTakeAll()) {
        ReportAllActionsTaken();
        takeAllPending = false;
        EnableActionRequestDialog();
    }
}

void HandleCommand(const UICommand& command) {
    switch (command.type) {
        case UICommandType::TakeAll: OnTakeAll(); break;
        case UICommandType::ShowDetails: ShowActionDetailsDialog(command.id); break;
        case UICommandType::DetailsClosed: EnableActionRequestDialog(); break;
        case UICommandType::CancelAction: OnCancelAction(command); break;
        case UICommandType::TakeAction: OnTakeAction(command); break;
        case UICommandType::Snooze: OnSnooze(command); break;
        case UICommandType::ConfirmAccepted: OnConfirmAccepted(command); break;
        case UICommandType::ConfirmDeclined:
            // Declining one confirmation aborts the whole take-all; nothing is sent.
            takeAllPending = false;
            EnableActionRequestDialog();
            break;
        case UICommandType::QuietModeClosed: EnableActionRequestDialog(); break;
        case UICommandType::OpenDialog: ShowActionDialog(); break;
        default: break;  // a value outside the vocabulary
    }
}

}  // namespace

void ProcessMessagesFromClient() {
    FiFoQueue<UIMessage> batch;
    FiFoQueue<UIMessage>& pending = PendingClientMessages();
    if (!pending.IsEmpty()) {
        batch.Swap(pending);
    } else {
        readQ.ReadMessages(batch);
    }
    try {
        while (!batch.IsEmpty()) {
            const UIMessage message = batch.TakeFront();
            if (message.text.Empty()) continue;
            if (HandleDocument(message) == DocumentOutcome::HoldBackRest) {
                pending.Splice(batch);
                break;
            }
        }
        // One refresh for the whole batch; failing, it is the batch's failure.
        FlushActionRequestDialog();
    } catch (...) {
        // One bad message costs the rest of its batch, nothing more; the
        // client is not told.
    }
}

void ProcessMessagesFromUI() {
    FiFoQueue<std::unique_ptr<UICommand>> commands;
    uiCommandQ.ReadMessages(commands);
    while (!commands.IsEmpty()) {
        const std::unique_ptr<UICommand> command = commands.TakeFront();
        try {
            if (command) HandleCommand(*command);
            FlushActionRequestDialog();
        } catch (...) {
            // Only this command is lost.
        }
    }
}

void ReportActionTaken(std::size_t position, bool isCancel) {
    if (position >= actions.size()) return;
    SendToClient(clientWriter, ActionTaken(actions[position].id, isCancel, false));
    actions.erase(actions.begin() + static_cast<std::ptrdiff_t>(position));
    UpdateActionRequestDialog();
}

void ReportAllActionsTaken() {
    for (const ActionRequest& action : actions) {
        SendToClient(clientWriter, ActionTaken(action.id, false, false));
    }
    actions.clear();
    UpdateActionRequestDialog();
    EnableActionRequestDialog();
}

bool ConfirmIfRequired(std::size_t position) {
    if (position >= actions.size() || !actions[position].preActionMessage) return false;
    ShowConfirmationRequestDialog(actions[position].id);
    return true;
}

void PostponeUntil(Instant until) {
    // Made first: an instant beyond the calendar throws before anything changes.
    const RemindTime remindTime(TimeObject(until, TimeZone(0)));
    m_postponedTo = until;
    SendToClient(clientWriter, remindTime);
}

SnoozeChoice ChooseSnooze(std::int32_t minutes, std::uint32_t seconds) {
    const TimeInterval byMinutes(std::int64_t{minutes} * kMicrosecondsPerMinute);
    if (minutes > 0) return {byMinutes, byMinutes};
    const TimeInterval delay = byMinutes + TimeInterval(std::int64_t{seconds} * kMicrosecondsPerSecond);
    return {delay, minutes < 0 ? byMinutes : delay};
}
