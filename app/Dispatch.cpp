#include "app/Dispatch.h"

#include <algorithm>
#include <malloc.h>
#include <memory>
#include <vector>
#include <utility>

#include "actions/PendingActions.h"
#include "app/ClientLink.h"
#include "app/DialogCalls.h"
#include "app/Initialization.h"
#include "app/Settings.h"
#include "base/time/TimeObject.h"
#include "base/xml/SimpleXML.h"
#include "base/xml/XMLArena.h"
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

// The entries pending when Take All Actions was pressed, in list order; the
// walk has come as far as takeAllCursor.
std::vector<EntryNumber> takeAllEntries;
// The entry whose confirmation is open, 0 when none is. Asked for by the
// dispatch alone, one at a time; only its answer clears it.
EntryNumber confirmationEntry = 0;

// The messages that followed an applied InitializationInfo in its batch; they
// are handled by the next call, once the program is initialised. Never
// destroyed, like the queues it is filled from.
FiFoQueue<UIMessage>& PendingClientMessages() {
    static FiFoQueue<UIMessage>* pending = new FiFoQueue<UIMessage>;
    return *pending;
}

// The confirmation, the details and, during a quiet period, its notice hold
// the action dialog: it takes no input while one of them is open, whoever
// asks to enable it.
bool ActionDialogHeld() {
    return confirmationEntry != 0 || IsConfirmationDialogShown() || IsActionDetailsDialogShown() ||
           (inQuietMode && IsQuietModeDialogShown());
}

void EnableUnlessHeld() {
    if (!ActionDialogHeld()) EnableActionRequestDialog();
}

// ---- One handler per client element ----

void OnActionRequest(const XMLElement& element) {
    ActionRequest request;
    XMLSerialize(element, request);
    AppendAction(request);
    UpdateActionRequestDialog();
    const bool wasShown = IsActionRequestDialogShown();
    // Even while snoozed: a new action always brings the dialog up.
    ShowActionDialog();
    // One already up is not pulled over the user's work: it asks instead.
    if (wasShown) MarkActionRequestDialogUrgent();
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
        EnableUnlessHeld();
    }
}

enum class DocumentOutcome { Handled, HoldBackRest };

// Handles one document's messages in order. An applied InitializationInfo
// ends the document there: what follows it in the same document is dropped.
DocumentOutcome HandleDocument(const UIMessage& message) {
    // The tree lives in an arena of its own, so the records decoded from it
    // meanwhile do not keep its pages in the heap after it goes.
    XMLArena arena;
    const std::unique_ptr<XMLElement> root = SimpleXML::Parse(message.text.Ref(), arena.Resource());
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

// The entry a command is about: the one the user acted on, or, when the
// command does not say, the one listed for its ID.
std::size_t PositionOf(const UICommand& command) {
    return command.entry != 0 ? FindEntry(command.entry) : FindShownEntry(command.id);
}

// The press that led here disabled the action dialog, but a client document
// handled since (a quiet period's end) may have enabled it again: under a
// confirmation or the details it stays disabled.
void HoldActionDialog() {
    DisableActionRequestDialog();
}

void AskConfirmation(std::size_t position) {
    confirmationEntry = actions[position].entry;
    ShowConfirmationRequestDialog(actions[position].id, confirmationEntry);
    HoldActionDialog();
}

// Walks on through the entries the take-all covers and stops at the next
// one still pending that asks for a confirmation; at the end, takes them all.
void ContinueTakeAll() {
    while (takeAllCursor < takeAllEntries.size()) {
        const std::size_t position = FindEntry(takeAllEntries[takeAllCursor++]);
        if (position < actions.size() && actions[position].preActionMessage) {
            takeAllPending = true;
            AskConfirmation(position);
            return;
        }
    }
    takeAllPending = false;
    std::vector<EntryNumber> covered;
    covered.swap(takeAllEntries);
    ReportAllActionsTaken(covered);
}

void OnTakeAll(const UICommand& command) {
    // One consent at a time: the open confirmation's answer comes first.
    if (confirmationEntry != 0) return;
    const EntryNumber newest = command.entry != 0 ? command.entry : NewestEntryNumber();
    takeAllEntries.clear();
    for (const ActionRequest& action : actions) {
        if (action.entry <= newest) takeAllEntries.push_back(action.entry);
    }
    takeAllCursor = 0;
    ContinueTakeAll();
}

void OnShowDetails(const UICommand& command) {
    const std::size_t position = PositionOf(command);
    if (position == actions.size()) {
        EnableUnlessHeld();
        return;
    }
    ShowActionDetailsDialog(actions[position].id, actions[position].entry);
    HoldActionDialog();
}

void OnCancelAction(const UICommand& command) {
    const std::size_t position = PositionOf(command);
    if (position < actions.size()) ReportActionTaken(position, true);
    EnableUnlessHeld();
}

void OnTakeAction(const UICommand& command) {
    if (confirmationEntry != 0) return;
    const std::size_t position = PositionOf(command);
    if (position == actions.size()) {
        EnableUnlessHeld();
    } else if (actions[position].preActionMessage) {
        // A single confirmation: its ConfirmAccepted takes only this entry.
        AskConfirmation(position);
    } else {
        ReportActionTaken(position, false);
        EnableUnlessHeld();
    }
}

void OnSnooze(const UICommand& command) {
    if (actions.empty()) return;
    const SnoozeChoice choice = ChooseSnooze(command.minutes, command.seconds);
    PostponeUntil(Instant::Now() + choice.delay);
    m_remindInterval = choice.interval;
    SendToClient(clientWriter, RemindInterval(choice.interval));
}

// The answer is about the confirmation the dispatch asked for, whatever the
// command says: only one is ever open.
void OnConfirmAccepted() {
    const EntryNumber confirmed = confirmationEntry;
    confirmationEntry = 0;
    if (confirmed != 0 && takeAllPending) {
        ContinueTakeAll();
        return;
    }
    const std::size_t position = FindEntry(confirmed);
    if (confirmed != 0 && position < actions.size()) ReportActionTaken(position, false);
    EnableUnlessHeld();
}

// Declining one confirmation abandons the whole take-all; nothing is sent.
void OnConfirmDeclined() {
    confirmationEntry = 0;
    takeAllPending = false;
    takeAllEntries.clear();
    EnableUnlessHeld();
}

// The user asked for the dialog through another launcher: the one request
// that brings a covered or minimised dialog to the front.
void OnOpenDialog() {
    ShowActionDialog();
    RaiseActionRequestDialog();
}

void HandleCommand(const UICommand& command) {
    switch (command.type) {
        case UICommandType::TakeAll: OnTakeAll(command); break;
        case UICommandType::ShowDetails: OnShowDetails(command); break;
        case UICommandType::DetailsClosed: EnableUnlessHeld(); break;
        case UICommandType::CancelAction: OnCancelAction(command); break;
        case UICommandType::TakeAction: OnTakeAction(command); break;
        case UICommandType::Snooze: OnSnooze(command); break;
        case UICommandType::ConfirmAccepted: OnConfirmAccepted(); break;
        case UICommandType::ConfirmDeclined: OnConfirmDeclined(); break;
        case UICommandType::QuietModeClosed: EnableUnlessHeld(); break;
        case UICommandType::OpenDialog: OnOpenDialog(); break;
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
    if (batch.IsEmpty()) return;
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
    // A document's element tree is gone by now, but the small blocks the
    // records and the list took meanwhile lie among its freed ones and keep
    // the heap from shrinking at its top: give back the whole free pages.
    malloc_trim(0);
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

void ReportAllActionsTaken(const std::vector<EntryNumber>& entries) {
    std::vector<ActionRequest> kept;
    for (const ActionRequest& action : actions) {
        if (std::find(entries.begin(), entries.end(), action.entry) == entries.end()) {
            kept.push_back(action);
        } else {
            SendToClient(clientWriter, ActionTaken(action.id, false, false));
        }
    }
    actions.swap(kept);
    UpdateActionRequestDialog();
    EnableUnlessHeld();
}

void ShowActionDialog() {
    if (!ActionDialogHeld()) {
        ShowActionRequestDialog(false, m_remindInterval, m_snoozable);
        return;
    }
    // A dialog that comes up under a confirmation, the details or the quiet
    // notice comes up as held as the one it replaces.
    const bool wasShown = IsActionRequestDialogShown();
    ShowActionRequestDialog(false, m_remindInterval, m_snoozable);
    if (!wasShown && IsActionRequestDialogShown()) DisableActionRequestDialog();
}

void ForgetTakeAll() {
    takeAllPending = false;
    takeAllCursor = 0;
    takeAllEntries.clear();
    confirmationEntry = 0;
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
