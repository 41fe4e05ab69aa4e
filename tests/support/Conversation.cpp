#include "tests/support/Conversation.h"

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <sstream>
#include <vector>

#include "actions/PendingActions.h"
#include "app/ActionDialogModel.h"
#include "app/ClientLink.h"
#include "app/DialogCalls.h"
#include "app/Dispatch.h"
#include "app/Settings.h"
#include "app/Tick.h"
#include "base/time/Clock.h"
#include "base/time/TimeText.h"
#include "base/xml/SimpleXML.h"
#include "client/ClientDocuments.h"
#include "pipe/FiFoQueue.h"
#include "protocol/ClientRequests.h"
#include "protocol/XMLSerialize.h"

namespace {

constexpr std::int64_t kStart = 1700000000;  // seconds; the pinned clock's first reading

struct Violation {
    std::string what;
};

std::int64_t Seconds(Instant instant) { return instant.Microseconds() / kMicrosecondsPerSecond; }

bool HasMessage(const ActionRequest& action) { return static_cast<bool>(action.preActionMessage); }

// A forced entry whose own deadline has passed: the tick reports it without
// asking anyone, and that is not a take.
bool ForcedAndDue(const ActionRequest& action, Instant now) {
    return action.forceRun && action.deadline && Seconds(now) > action.deadline.Get().SecondsSinceEpoch();
}

// Whether the action dialog lists this entry: the latest pending entry of
// its ID, with a title.
bool Listed(EntryNumber entry) {
    const std::size_t position = FindEntry(entry);
    return position < actions.size() && FindShownEntry(actions[position].id) == position &&
           !actions[position].title.Empty();
}

// What the user was promised, as far as the checker has seen.
struct Expectations {
    EntryNumber chosen = 0;                      // the action the user chose and that is still listed
    std::optional<std::int32_t> snoozeMinutes;  // the snooze entry the user chose in this dialog
    std::set<EntryNumber> consented;             // confirmed by OK in the current take or take-all
    std::set<EntryNumber> covered;               // what the current take, cancel or take-all acts on
    bool takeAll = false;
    bool answerDue = false;  // a take, cancel or take-all the program has not finished with
    bool autoDeclined = false;  // the confirmation found its entry gone and declined itself
    int snoozesAsked = 0;                        // snooze presses with actions pending, since the last tick
};

// The screen: the action dialog's real rules, and the other dialogs as the
// little state the dispatch may ask about.
class Screen final : public DialogCalls {
public:
    explicit Screen(Expectations& expected) : expected_(expected) {}

    ActionDialogModel dialog;
    bool shown = false, enabled = false, owed = false;
    EntryNumber confirming = 0;  // the entry the open confirmation shows, 0 when closed
    unsigned long long confirmingId = 0;
    std::string confirmTitle, confirmMessage;
    bool detailsOpen = false, quietOpen = false;

    void ShowActionRequestDialog(bool, const TimeInterval& remindInterval, bool snoozable) override {
        if (shown) return;
        shown = enabled = true;
        owed = false;
        dialog.Open(remindInterval, snoozable);
        expected_.snoozeMinutes.reset();
        Rebuild();
    }
    void UpdateActionRequestDialog() override { owed = owed || (shown && enabled); }
    void FlushActionRequestDialog() override {
        if (owed) Rebuild();
    }
    bool IsActionRequestDialogShown() override { return shown; }
    void EnableActionRequestDialog() override {
        enabled = true;
        if (shown) Rebuild();
    }
    void DisableActionRequestDialog() override {
        FlushActionRequestDialog();
        enabled = false;
    }
    void ShowActionDetailsDialog(unsigned long long, EntryNumber) override { detailsOpen = true; }
    void ShowConfirmationRequestDialog(unsigned long long id, EntryNumber entry) override {
        if (confirming != 0) return;
        const std::size_t position = FindEntry(entry);
        if (position == actions.size()) {
            expected_.autoDeclined = true;
            QueueCommand(UICommand(UICommandType::ConfirmDeclined, id, 0, 0, entry));
            return;
        }
        confirming = entry;
        confirmingId = id;
        confirmTitle = std::string(actions[position].title.View());
        confirmMessage = HasMessage(actions[position]) ? std::string(actions[position].preActionMessage->View()) : "";
    }
    bool IsActionDetailsDialogShown() override { return detailsOpen; }
    bool IsConfirmationDialogShown() override { return confirming != 0; }
    void ShowMessageDialog(const MessageRequest&) override {}
    void RemoveMessageDialog(unsigned long long) override {}
    void RemoveTimedoutMessageDialogs() override {}
    void ShowQuietModeDialog(const Instant&, const Instant&) override { quietOpen = true; }
    void RemoveQuietModeDialog() override { quietOpen = false; }
    bool IsQuietModeDialogShown() override { return quietOpen; }
    void CreateHiddenWindowOnce() override {}
    void DestroyApplicationContext() override {}

    bool Held() const { return confirming != 0 || detailsOpen || (inQuietMode && quietOpen); }

    // A promise found broken during a rebuild: noted, not thrown, since the
    // dispatch's own handlers would swallow an exception; the conversation
    // throws it after the step.
    std::string broken;

private:
    // Every rebuild is where the choice and the snooze rules must show.
    void Rebuild() {
        owed = false;
        const Instant now = Instant::Now();
        dialog.Rebuild(actions, now);
        try {
            CheckChoice();
            CheckSnooze(now);
        } catch (const Violation& violation) {
            if (broken.empty()) broken = violation.what;
        }
    }

    void CheckChoice() {
        if (expected_.chosen != 0 && !Listed(expected_.chosen)) expected_.chosen = 0;
        const ActionRequest* selected = dialog.Selected();
        const EntryNumber shownChoice = selected != nullptr ? selected->entry : 0;
        if (shownChoice != expected_.chosen) {
            throw Violation{"the dialog shows entry " + std::to_string(shownChoice) + " chosen, the user chose " +
                            std::to_string(expected_.chosen)};
        }
    }

    void CheckSnooze(Instant now) {
        if (dialog.NothingPending()) return;
        bool near = false;
        for (const ActionRequest& action : actions) {
            near = near || (action.deadline && action.deadline.Get().SecondsSinceEpoch() < Seconds(now) + 300);
        }
        if (dialog.SnoozeAllowed() != (m_snoozable && !near)) {
            throw Violation{std::string("snoozing ") + (dialog.SnoozeAllowed() ? "offered" : "refused") +
                            (near ? " with a deadline less than five minutes away" : " with no deadline near")};
        }
        const int index = dialog.SnoozeSelected();
        const auto& list = dialog.SnoozeList();
        const auto chosen = [&](const SnoozeEntry& e) { return e.minutes == *expected_.snoozeMinutes; };
        const bool stillOffered = expected_.snoozeMinutes && std::any_of(list.begin(), list.end(), chosen);
        if (stillOffered && (index < 0 || list[static_cast<std::size_t>(index)].minutes != *expected_.snoozeMinutes)) {
            throw Violation{"a refresh dropped the user's snooze choice"};
        }
        if (!stillOffered) expected_.snoozeMinutes.reset();
    }

    Expectations& expected_;
};

// What the tick sent to the client, read as the sample client reads it.
std::vector<Report> TakeReports() {
    FiFoQueue<UIMessage> queued;
    writeQ.ReadMessages(queued);
    std::vector<Report> reports;
    while (!queued.IsEmpty()) {
        for (Report& report : ReadReports(queued.TakeFront().text.Str())) reports.push_back(std::move(report));
    }
    return reports;
}

// The conversation itself: the steps, the client's view of the pending list,
// and the checks.
class Conversation {
public:
    Conversation(ConversationChoices& choices) : choices_(choices), screen_(expected_), clock_(At(0)) {
        Reset();
        clientPipe = nullptr;
        initialized = true;
        m_postponedTo = Instant();
        m_remindInterval = TimeInterval(300 * kMicrosecondsPerSecond);
        m_snoozable = choices_.Below(4) != 0;
        WireDialogCalls(&screen_);
    }
    ~Conversation() {
        WireDialogCalls(nullptr);
        Reset();
        initialized = false;
    }

    std::string Play(int steps) {
        try {
            for (int step = 0; step < steps && !choices_.Exhausted(); ++step) Step();
            Tick();  // whatever was still queued is handled and checked too
        } catch (const Violation& violation) {
            return violation.what + "\nafter:\n" + log_.str();
        }
        return "";
    }

private:
    // Nothing queued, pending or held from an earlier run.
    static void Reset() {
        FiFoQueue<UIMessage> dropped;
        readQ.ReadMessages(dropped);
        writeQ.ReadMessages(dropped);
        FiFoQueue<std::unique_ptr<UICommand>> droppedCommands;
        uiCommandQ.ReadMessages(droppedCommands);
        actions.clear();
        ForgetTakeAll();
        inQuietMode = false;
    }
    static Instant At(std::int64_t seconds) { return Instant((kStart + seconds) * kMicrosecondsPerSecond); }
    Instant Now() const { return Instant::Now(); }

    void Step() {
        switch (choices_.Below(16)) {
            case 0: case 1: case 2: SendDocument(); break;
            case 3: case 4: case 5: case 6: Tick(); break;
            case 7: Elapse(); break;
            case 8: case 9: Select(); break;
            case 10: case 11: Press(); break;
            case 12: ChooseSnooze(); break;
            case 13: AnswerConfirmation(); break;
            case 14: CloseNotice(); break;
            default: Note("open request"), QueueCommand(UICommandType::OpenDialog, 0, 0, 0); break;
        }
        CheckHold();
    }

    void Note(const std::string& line) { log_ << "  " << line << "\n"; }

    // ---- The client ----

    std::string Deadline() {
        static const std::int64_t offsets[] = {-120, 30, 90, 299, 300, 301, 1200, 90000};
        const std::int64_t seconds = Seconds(Now()) + offsets[choices_.Below(8)];
        return "<Deadline>" + TimeToText(Instant(seconds * kMicrosecondsPerSecond), TimeZone(0)).Str() + "</Deadline>";
    }

    std::string ActionElement() {
        const unsigned long long id = 1 + choices_.Below(4);
        const int n = ++made_;
        std::string xml = "<ActionRequest><ID>" + std::to_string(id) + "</ID>";
        if (choices_.Below(6) != 0) xml += "<Title>Action " + std::to_string(n) + "</Title>";
        if (choices_.Below(2) != 0) xml += Deadline();
        if (choices_.Below(3) == 0) xml += "<ForceRun>true</ForceRun>";
        if (choices_.Below(2) != 0) xml += "<PreActionMessage>Message " + std::to_string(n) + "</PreActionMessage>";
        if (choices_.Below(3) == 0) xml += "<Preview>Script " + std::to_string(n) + "</Preview>";
        if (choices_.Below(2) != 0) xml += "<Cancellable>true</Cancellable>";
        xml += "</ActionRequest>";
        arrivals_.push_back({id, false, Decoded(xml)});
        return xml;
    }

    std::string Element() {
        switch (choices_.Below(8)) {
            case 0: case 1: case 2: case 3: return ActionElement();
            case 4: case 5: {
                static const char* types[] = {"Action", "All", "Message", "Offer"};
                const char* type = types[choices_.Below(4)];
                const unsigned long long id = 1 + choices_.Below(4);
                if (std::string(type) == "Action" || std::string(type) == "All") arrivals_.push_back({id, true, {}});
                return std::string("<RemoveRequest><RemoveType>") + type + "</RemoveType><ID>" + std::to_string(id) +
                       "</ID></RemoveRequest>";
            }
            case 6: {
                // Not "<QuietModeEnd/>": the reader takes that form as closing the parent.
                if (choices_.Below(2) == 0) return "<QuietModeEnd></QuietModeEnd>";
                const std::string start = TimeToText(Now(), TimeZone(0)).Str();
                return "<QuietModeStart><StartTime>" + start + "</StartTime><EndTime>" + start +
                       "</EndTime></QuietModeStart>";
            }
            default:
                return "<MessageRequest><Title>Note</Title><Message>m</Message><ID>" +
                       std::to_string(1 + choices_.Below(3)) + "</ID></MessageRequest>";
        }
    }

    void SendDocument() {
        std::string document = "<ClientToUI>";
        for (unsigned i = 0, count = 1 + choices_.Below(3); i < count; ++i) document += Element();
        document += "</ClientToUI>";
        Note("client: " + document);
        UIMessage message;
        message.text = AutoUString<UTF8>(document);
        readQ.WriteMessage(std::move(message));
    }

    // ---- Time ----

    void Elapse() {
        const std::int64_t by = 30 + choices_.Below(400);
        Note("time passes " + std::to_string(by) + " s");
        clock_.Set(Now() + TimeInterval(by * kMicrosecondsPerSecond));
        Tick();
    }

    // The client's view of the list after the documents of this tick: what
    // it sent, less what it withdrew (the first entry of an ID each time).
    std::vector<ActionRequest> PendingAfterDocuments() {
        std::vector<ActionRequest> pending = actions;
        EntryNumber next = NewestEntryNumber();
        for (const Arrival& arrival : arrivals_) {
            if (!arrival.removal) {
                pending.push_back(arrival.request);
                pending.back().entry = ++next;
                known_[next] = pending.back();
                continue;
            }
            const auto first = std::find_if(pending.begin(), pending.end(),
                                            [&](const ActionRequest& a) { return a.id == arrival.id; });
            if (first != pending.end()) pending.erase(first);
        }
        arrivals_.clear();
        return pending;
    }

    void Tick() {
        Note("tick");
        std::vector<ActionRequest> pending = PendingAfterDocuments();
        clock_.Set(Now() + TimeInterval(kMicrosecondsPerSecond));
        RunClientUITick();
        if (!screen_.broken.empty()) throw Violation{screen_.broken};
        const std::vector<Report> reports = TakeReports();
        // What the tick left and sent, for the reader of a failure: entry/ID pairs, then reports.
        std::string line = "  -> pending:";
        for (const ActionRequest& a : actions) line += " " + std::to_string(a.entry) + "/" + std::to_string(a.id);
        line += "; sent:";
        for (const Report& r : reports) {
            line += " " + r.kind + (r.cancel ? "(cancel " : "(") + std::to_string(r.id) + ")";
        }
        Note(line);
        CheckReports(pending, reports);
        CheckDone();
        expected_.snoozesAsked = 0;
    }

    // ---- The user ----

    bool DialogTakesInput() const { return screen_.shown && screen_.enabled; }

    void Select() {
        if (!DialogTakesInput()) return;
        const int row = static_cast<int>(choices_.Below(static_cast<unsigned>(screen_.dialog.Rows().size()) + 1)) - 1;
        Note("user selects row " + std::to_string(row));
        screen_.dialog.SelectRow(row);
        const ActionRequest* selected = screen_.dialog.Selected();
        expected_.chosen = selected != nullptr ? selected->entry : 0;
    }

    void ChooseSnooze() {
        if (!DialogTakesInput() || !screen_.dialog.SnoozeAllowed() || screen_.dialog.NothingPending()) return;
        const int index = static_cast<int>(choices_.Below(static_cast<unsigned>(screen_.dialog.SnoozeList().size())));
        Note("user chooses snooze entry " + std::to_string(index));
        screen_.dialog.ChooseSnooze(index);
        expected_.snoozeMinutes = screen_.dialog.SnoozeList()[static_cast<std::size_t>(index)].minutes;
    }

    void Press() {
        static const ActionButton buttons[] = {ActionButton::TakeAll, ActionButton::Take, ActionButton::Cancel,
                                               ActionButton::Details, ActionButton::Snooze};
        static const char* names[] = {"Take All", "Take", "Cancel", "Details", "Snooze"};
        const unsigned which = choices_.Below(5);
        const ActionButton button = buttons[which];
        if (!DialogTakesInput() || !screen_.dialog.IsSensitive(button)) return;
        Note(std::string("user presses ") + names[which]);
        const std::optional<UICommand> command = screen_.dialog.CommandFor(button, Now());
        const ActionRequest* selected = screen_.dialog.Selected();
        if (button == ActionButton::Snooze) {
            screen_.shown = false;
            if (!screen_.dialog.NothingPending()) ++expected_.snoozesAsked;
        } else if (button == ActionButton::TakeAll) {
            expected_.covered.clear();
            for (const ActionRequest& action : actions) expected_.covered.insert(action.entry);
            expected_.consented.clear();
            expected_.takeAll = true;
            expected_.answerDue = true;
        } else if (button == ActionButton::Take || button == ActionButton::Cancel) {
            expected_.covered = {selected->entry};
            expected_.consented.clear();
            expected_.takeAll = false;
            expected_.answerDue = true;
        }
        if (!command) return;
        Note("  -> command entry " + std::to_string(command->entry) + " id " + std::to_string(command->id));
        if (button != ActionButton::Snooze) screen_.enabled = false;
        QueueCommand(*command);
    }

    void AnswerConfirmation() {
        if (screen_.confirming == 0) return;
        const bool ok = choices_.Below(3) != 0;
        const EntryNumber entry = screen_.confirming;
        Note(std::string("user answers ") + (ok ? "OK" : "Cancel") + " on the confirmation of entry " +
             std::to_string(entry));
        const ActionRequest& sent = known_.at(entry);
        if (ok && (screen_.confirmTitle != sent.title.View() || !HasMessage(sent) ||
                   screen_.confirmMessage != sent.preActionMessage->View())) {
            throw Violation{"the confirmation of entry " + std::to_string(entry) + " showed \"" +
                            screen_.confirmTitle + "\": \"" + screen_.confirmMessage + "\", not its own texts"};
        }
        if (ok) expected_.consented.insert(entry);
        expected_.answerDue = ok;
        screen_.confirming = 0;
        QueueCommand(UICommand(ok ? UICommandType::ConfirmAccepted : UICommandType::ConfirmDeclined,
                               screen_.confirmingId, 0, 0, entry));
    }

    void CloseNotice() {
        if (screen_.detailsOpen && choices_.Below(2) == 0) {
            Note("user closes the details");
            screen_.detailsOpen = false;
            QueueCommand(UICommandType::DetailsClosed, 0, 0, 0);
        } else if (screen_.quietOpen) {
            Note("user presses OK on the quiet notice");
            screen_.quietOpen = false;
            QueueCommand(UICommandType::QuietModeClosed, 0, 0, 0);
        }
    }

    // ---- The checks ----

    void CheckHold() const {
        if (!screen_.broken.empty()) throw Violation{screen_.broken};
        if (screen_.shown && screen_.enabled && screen_.Held()) {
            throw Violation{"the action dialog takes input under an open confirmation, details or quiet notice"};
        }
    }

    // Once the program has handled a take, cancel or take-all and asks for no
    // more confirmations, what it acted on is no longer pending.
    void CheckDone() {
        if (expected_.autoDeclined) expected_.answerDue = expected_.autoDeclined = false;
        if (!expected_.answerDue || screen_.confirming != 0) return;
        expected_.answerDue = false;
        for (const ActionRequest& entry : actions) {
            if (expected_.covered.count(entry.entry) != 0) {
                throw Violation{"entry " + std::to_string(entry.entry) + " is still pending after the user took it"};
            }
        }
    }

    // `pending`: the client's view after this tick's documents; `reports`:
    // what the tick sent.
    void CheckReports(const std::vector<ActionRequest>& pending, const std::vector<Report>& reports) {
        std::multiset<unsigned long long> reportedIds;
        std::map<unsigned long long, int> cancels;
        int reminders = 0;
        for (const Report& report : reports) {
            if (report.kind == "RemindTime") ++reminders;
            if (report.kind != "ActionTaken") continue;
            reportedIds.insert(report.id);
            if (report.cancel) ++cancels[report.id];
        }
        if (reminders > expected_.snoozesAsked) throw Violation{"snoozed without a Snooze press on pending actions"};

        std::multiset<unsigned long long> vanishedIds;
        std::map<unsigned long long, int> unconsented;
        bool tookCovered = false;
        for (const ActionRequest& entry : pending) {
            if (FindEntry(entry.entry) < actions.size()) continue;
            vanishedIds.insert(entry.id);
            if (ForcedAndDue(entry, Now())) continue;
            if (expected_.covered.count(entry.entry) == 0) {
                throw Violation{"entry " + std::to_string(entry.entry) + " (ID " + std::to_string(entry.id) +
                                ") was reported though the user acted on other entries"};
            }
            tookCovered = true;
            if (HasMessage(entry) && expected_.consented.count(entry.entry) == 0) ++unconsented[entry.id];
        }
        if (vanishedIds != reportedIds) {
            throw Violation{"the reports do not match what left the list: an entry was lost or invented"};
        }
        for (const auto& [id, count] : unconsented) {
            if (count > cancels[id]) {
                throw Violation{"an entry with ID " + std::to_string(id) +
                                " was reported taken without OK on its own confirmation"};
            }
        }
        for (const ActionRequest& entry : actions) {
            const auto same = [&](const ActionRequest& p) { return p.entry == entry.entry; };
            if (std::none_of(pending.begin(), pending.end(), same)) {
                throw Violation{"entry " + std::to_string(entry.entry) + " is pending that the client never sent"};
            }
        }
        if (tookCovered && expected_.takeAll) {
            for (const ActionRequest& entry : actions) {
                if (expected_.covered.count(entry.entry) != 0 && !ForcedAndDue(entry, Now())) {
                    throw Violation{"a take-all left entry " + std::to_string(entry.entry) + " pending"};
                }
            }
        }
    }

    struct Arrival {
        unsigned long long id;
        bool removal;           // a withdrawal of the first entry with the ID
        ActionRequest request;  // else the entry as the program will read it
    };

    static ActionRequest Decoded(const std::string& xml) {
        ActionRequest request;
        XMLLoad(*SimpleXML::Parse(UStringRef<UTF8>(xml)), request);
        return request;
    }

    ConversationChoices& choices_;
    Expectations expected_;
    Screen screen_;
    ScopedClockOverride clock_;
    std::vector<Arrival> arrivals_;             // this tick's documents, as the client sees them
    std::map<EntryNumber, ActionRequest> known_;  // every entry as it arrived
    int made_ = 0;
    std::ostringstream log_;
};

}  // namespace

std::string PlayConversation(ConversationChoices& choices, int steps) {
    Conversation conversation(choices);
    return conversation.Play(steps);
}
