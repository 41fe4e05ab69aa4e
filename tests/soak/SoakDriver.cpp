// The soak: the real program on a private Xvfb for MINUTES minutes, fed random
// client documents through the sample client's code while random clicks and
// keys land on its windows. Run by scripts/soak.sh, which gives it a private
// directory and removes it. What it checks: docs/design.md, "The soak".

#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <fstream>
#include <cstdio>
#include <random>

#include "bench/ProcessMemory.h"
#include "client/OpenDialogRequest.h"
#include "client/Session.h"
#include "tests/support/Xvfb.h"

// X headers last: they define None, True, False and friends as macros.
#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

namespace {

using Clock = SteadyClock;
using std::chrono::milliseconds;
using std::chrono::seconds;

// The program, for the signal handler, which ends it by its own id; the
// server ends with this process by its death signal.
volatile pid_t programPid = -1;

void EndChildren(int signal) {
    if (programPid > 0) kill(programPid, SIGKILL);
    _exit(128 + signal);
}

int IgnoreXError(Display*, XErrorEvent*) { return 0; }

// The viewable children of `window`, bottom to top (the toolkit makes a
// parent's windows from its last child to its first).
std::vector<Window> Viewable(Display* x, Window window) {
    Window root = 0, parent = 0, *children = nullptr;
    unsigned int count = 0;
    std::vector<Window> found;
    if (XQueryTree(x, window, &root, &parent, &children, &count) == 0) return found;
    for (unsigned int i = 0; i < count; ++i) {
        XWindowAttributes attributes{};
        if (XGetWindowAttributes(x, children[i], &attributes) && attributes.map_state == IsViewable) {
            found.push_back(children[i]);
        }
    }
    if (children != nullptr) XFree(children);
    return found;
}


// One ActionRequest the soak sent, and what became of it.
struct Entry {
    unsigned long long id;
    std::string title;
    bool message, forced;
    Clock::time_point sent;
    std::optional<Clock::time_point> removed;
    bool reported = false;
    bool NeedsConsent() const { return message && !forced; }
};

// A "Confirmation Required" window as it was mapped: when, the entries it may
// have been for, and the take it answered.
struct Confirmation {
    Clock::time_point at;
    std::vector<std::size_t> entries;
    int take = -1;
};

struct Counts {
    int documents, actions, removals, messages, quiet, clicks, keys, opens;
    int taken, cancelled, forced, snoozes, confirmations, identified;
};

class Soak {
public:
    Soak(std::uint64_t seed, bool memory) : random_(seed), memory_(memory) {}

    int Run(const std::string& program, const std::string& work, int minutes) {
        const std::string display = xvfb_.Start() ? xvfb_.DisplayName() : "";
        XSetErrorHandler(IgnoreXError);
        x_ = display.empty() ? nullptr : XOpenDisplay(display.c_str());
        int event = 0, error = 0, major = 0, minor = 0;
        if (x_ == nullptr || !XTestQueryExtension(x_, &event, &error, &major, &minor)) {
            std::printf("soak: no private display with XTest\n");
            return 1;
        }
        XSelectInput(x_, DefaultRootWindow(x_), SubstructureNotifyMask);
        // The labels' font when no resource names one: the toolkit's own choice.
        font_ = XLoadQueryFont(x_, "-*-*-*-R-*-*-*-120-*-*-*-*-ISO8859-*");
        if (font_ == nullptr) font_ = XLoadQueryFont(x_, "fixed");
        transcript_.open(work + "/transcript.log");
        SessionOptions options;
        options.program = program;
        options.environment = {"DISPLAY=" + display, "PATH=/usr/bin:/bin", "LANG=C", "HOME=" + work,
                               "XFILESEARCHPATH=/nonexistent/%N", "XUSERFILESEARCHPATH=/nonexistent/%N",
                               "ASAN_OPTIONS=detect_leaks=1:log_path=" + work + "/sanitizer",
                               "UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1:log_path=" + work + "/sanitizer"};
        options.baseDirectory = work + "/base";
        options.readyTimeout = options.exitTimeout = seconds(30);
        session_ = std::make_unique<Session>(options, transcript_);
        try {
            session_->Start(Scenario());
            programPid = session_->Process().Pid();
            start_ = Clock::now();
            for (int minute = 1; minute <= minutes; ++minute) {
                const Clock::time_point end = start_ + seconds(60 * minute - 5);
                while (Clock::now() < end) {
                    const int roll = Pick(100);
                    if (roll < 12) {
                        std::vector<Command> document;
                        for (int n = 1 + Pick(3); n > 0; --n) document.push_back(RandomRecord());
                        Send(document);
                    } else if (roll < 98) {
                        RandomInput();
                    } else {
                        std::string ignored;
                        counts_.opens += SendOpenRequest(display, seconds(2), ignored) > 0;
                    }
                    Pump(std::min(end, Clock::now() + milliseconds(30 + Pick(170))));
                }
                if (!MinuteCheck(minute)) break;
            }
            std::vector<Command> document;
            RemoveAll(document, "All");
            if (!document.empty()) Send(document);
            Pump(Clock::now() + seconds(2));
            const int status = session_->Finish();
            if (status != 0) Fail("the program exited with status " + std::to_string(status));
        } catch (const ClientError& failure) {
            Fail("zam-client: " + failure.message);
        } catch (const ReportUnreadable& unreadable) {
            Fail("an unreadable report: " + unreadable.reason);
        }
        programPid = -1;
        session_.reset();
        XCloseDisplay(x_);
        std::printf("soak: %d failed checks\n", failures_);
        return failures_ == 0 ? 0 : 1;
    }

private:
    double Since(Clock::time_point t) const { return std::chrono::duration<double>(t - start_).count(); }
    int Pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(random_); }
    bool Chance(int percent) { return Pick(100) < percent; }
    void Fail(const std::string& what) {
        std::printf("FAIL at %.1f s: %s\n", Since(Clock::now()), what.c_str());
        std::fflush(stdout);
        transcript_ << "FAIL " << what << std::endl;
        ++failures_;
    }
    // Pending, or withdrawn so recently that the removal may cross a take.
    bool Live(const Entry& e, Clock::time_point now) const {
        return !e.reported && (!e.removed || now - *e.removed < seconds(10));
    }
    std::vector<std::size_t> Pending() const {
        std::vector<std::size_t> pending;
        for (std::size_t i = 0; i < entries_.size(); ++i) {
            if (!entries_[i].reported && !entries_[i].removed) pending.push_back(i);
        }
        return pending;
    }

    Command NewAction() {
        Command command;
        command.kind = Command::Kind::Action;
        ActionCommand& a = command.action;
        const std::size_t k = entries_.size();
        const std::vector<std::size_t> pending = Pending();
        a.id = !pending.empty() && Chance(15) ? entries_[pending[Pick(pending.size())]].id : 1000 + k;
        // Of many lengths, so that a confirmation's title tells its entry.
        if (!Chance(12)) a.title = "Soak " + std::to_string(k) + std::string(k * 7 % 29, '-');
        a.text = "Step " + std::to_string(k) + " of the soak.";
        if (Chance(50)) a.confirm = Chance(10) ? std::string(3000, 'w') : "Please confirm step " + std::to_string(k);
        if (Chance(30)) a.preview = "echo step " + std::to_string(k);
        if (Chance(50)) a.deadline = milliseconds(Pick(1200000) - 60000);
        a.force = a.deadline && Chance(40);
        if (a.force) a.deadline = milliseconds(Pick(60000) - 5000);
        a.cancellable = Chance(50), a.restart = Chance(15), a.shutdown = Chance(10), a.save = Chance(20);
        entries_.push_back({a.id, a.title, a.confirm.has_value(), a.force, Clock::now(), {}});
        ++counts_.actions;
        return command;
    }

    Command RandomRecord() {
        Command command;
        const std::vector<std::size_t> pending = Pending();
        const int roll = pending.size() >= 10 ? 50 + Pick(50) : Pick(100);
        if (roll < 60) return NewAction();
        if (roll < 84) {
            static const char* const kTypes[] = {"Action", "Offer", "Message", "All"};
            command.kind = Command::Kind::Remove;
            const std::string type = command.remove.type = kTypes[Pick(4)];
            const bool message = type == "Message" || (type == "All" && Chance(30)) || pending.empty();
            command.remove.id = message ? 1 + Pick(8) : entries_[pending[Pick(pending.size())]].id;
            // Of several entries with the ID the model cannot always tell which
            // is whose, so it takes away one that asks for consent first: the
            // ones it keeps then never demand more consent than the program's.
            std::vector<std::size_t> same;
            for (const std::size_t i : pending) {
                if (entries_[i].id == command.remove.id) same.push_back(i);
            }
            std::stable_partition(same.begin(), same.end(), [&](std::size_t i) { return entries_[i].NeedsConsent(); });
            if ((type == "Action" || type == "All") && !same.empty()) entries_[same[0]].removed = Clock::now();
            ++counts_.removals;
        } else if (roll < 94) {
            command.kind = Command::Kind::Message;
            command.message = {static_cast<unsigned long long>(1 + Pick(8)), "Notice", "A message of the soak.", {},
                               Chance(20)};
            if (Chance(50)) command.message.timeout = milliseconds(Pick(20000));
            ++counts_.messages;
        } else {
            command.kind = roll < 97 ? Command::Kind::QuietStart : Command::Kind::QuietEnd;
            command.quietStart.end = milliseconds(5000 + Pick(40000));
            ++counts_.quiet;
        }
        return command;
    }

    // Every pending entry withdrawn, one RemoveRequest each.
    void RemoveAll(std::vector<Command>& document, const std::string& type = "Action") {
        for (const std::size_t i : Pending()) {
            document.emplace_back().kind = Command::Kind::Remove;
            document.back().remove = {type, entries_[i].id};
            entries_[i].removed = Clock::now();
        }
    }

    void Send(const std::vector<Command>& document) {
        session_->SendRecords(document);
        ++counts_.documents;
    }

    void RandomInput() {
        // One of the program's windows, half the time the topmost (the newest
        // dialog, as a user answers it), then mostly a widget without children
        // in it (a button, a list, a scroll bar), else any window in it.
        const std::vector<Window> shells = Viewable(x_, DefaultRootWindow(x_));
        if (shells.empty()) return;
        std::vector<Window> windows{Chance(50) ? shells.back() : shells[Pick(shells.size())]}, leaves;
        for (std::size_t i = 0; i < windows.size(); ++i) {
            const std::vector<Window> inside = Viewable(x_, windows[i]);
            if (inside.empty()) leaves.push_back(windows[i]);
            windows.insert(windows.end(), inside.begin(), inside.end());
        }
        const Window target = Chance(70) ? leaves[Pick(leaves.size())] : windows[Pick(windows.size())];
        XWindowAttributes size{};
        if (XGetWindowAttributes(x_, target, &size) == 0) return;
        const auto move = [&] {
            int x = 0, y = 0;
            Window child = 0;
            XTranslateCoordinates(x_, target, DefaultRootWindow(x_), Pick(std::max(1, size.width)),
                                  Pick(std::max(1, size.height)), &x, &y, &child);
            XTestFakeMotionEvent(x_, -1, x, y, CurrentTime);
        };
        move();
        if (Chance(15)) {
            static const KeySym kKeys[] = {XK_Return, XK_space, XK_Tab, XK_Escape, XK_Up, XK_Down,
                                           XK_Next,   XK_a,     XK_q,   XK_1,      XK_KP_Enter, XK_Delete};
            const KeyCode key = XKeysymToKeycode(x_, kKeys[Pick(12)]);
            XTestFakeKeyEvent(x_, key, True, CurrentTime);
            XTestFakeKeyEvent(x_, key, False, CurrentTime);
            ++counts_.keys;
        } else {
            // Mostly the first button, now and then the third or the wheel;
            // sometimes dragged within the window, as on a scroll bar.
            static const unsigned kButtons[] = {1, 1, 1, 1, 1, 1, 3, 4, 5};
            const unsigned button = kButtons[Pick(9)];
            XTestFakeButtonEvent(x_, button, True, CurrentTime);
            if (Chance(10)) move();
            XTestFakeButtonEvent(x_, button, False, CurrentTime);
            ++counts_.clicks;
        }
        XSync(x_, False);
    }

    // Which entries a confirmation just mapped may be for. Its "actiontitle"
    // label is as wide as the title in the labels' font plus a padding, which
    // the "staticlabel" below it, of known text, gives. A width that matches
    // no live entry, or a window gone before it was read, leaves every live
    // entry that asks as a candidate: never a false alarm.
    void Mapped(Window window) {
        char* name = nullptr;
        if (XFetchName(x_, window, &name) == 0 || name == nullptr) return;
        const bool confirmation = std::string(name) == "Confirmation Required";
        XFree(name);
        if (!confirmation) return;
        ++counts_.confirmations;
        const Clock::time_point now = Clock::now();
        const std::vector<Window> form = Viewable(x_, window);
        const std::vector<Window> labels = form.size() == 1 ? Viewable(x_, form[0]) : std::vector<Window>();
        XWindowAttributes title{}, sentence{};
        static const std::string kSentence =
            "This action requires you to acknowledge the following confirmation message:";
        const bool read = labels.size() >= 2 && XGetWindowAttributes(x_, labels.back(), &title) &&
                          XGetWindowAttributes(x_, labels[labels.size() - 2], &sentence) && font_ != nullptr;
        const int padding = read ? sentence.width - XTextWidth(font_, kSentence.data(), kSentence.size()) : -1;
        std::vector<std::size_t> all, same;
        bool named = false;
        for (std::size_t i = 0; i < entries_.size(); ++i) {
            if (!Live(entries_[i], now)) continue;
            const Entry& e = entries_[i];
            const int width = XTextWidth(font_, e.title.data(), e.title.size());
            const bool match = padding >= 0 && width + padding == title.width;
            named = named || match;
            if (e.NeedsConsent()) all.push_back(i);
            if (e.NeedsConsent() && match) same.push_back(i);
        }
        counts_.identified += named;
        confirmations_.push_back({now, named ? same : all});
        transcript_ << Since(now) << " s: a confirmation for";
        for (const std::size_t i : confirmations_.back().entries) transcript_ << " \"" << entries_[i].title << '"';
        transcript_ << std::endl;
    }

    void DrainX() {
        while (XPending(x_) > 0) {
            XEvent event;
            XNextEvent(x_, &event);
            if (event.type == MapNotify) Mapped(event.xmap.window);
        }
    }

    // An augmenting path (Kuhn): every take that needs consent gets a
    // confirmation of its own, mapped for its entry after the entry was sent
    // and before the take was reported.
    bool Augment(std::size_t take, std::vector<char>& seen) {
        const auto [entry, at] = takes_[take];
        for (std::size_t c = 0; c < confirmations_.size(); ++c) {
            Confirmation& shown = confirmations_[c];
            if (seen[c] || shown.at <= entries_[entry].sent || shown.at >= at ||
                std::find(shown.entries.begin(), shown.entries.end(), entry) == shown.entries.end()) {
                continue;
            }
            seen[c] = 1;
            if (shown.take < 0 || Augment(shown.take, seen)) {
                shown.take = static_cast<int>(take);
                return true;
            }
        }
        return false;
    }

    void Reported(const Report& report) {
        transcript_ << Since(Clock::now()) << " s: " << report.text << std::endl;
        counts_.snoozes += report.kind == "RemindTime";
        if (report.kind == "ClientUIErrorMessage") Fail("the program reported " + report.text);
        if (report.kind != "ActionTaken") return;
        if (awaited_ == report.id) awaited_.reset();
        // Every window the program mapped before it sent this is seen first.
        XSync(x_, False);
        DrainX();
        const Clock::time_point now = Clock::now();
        std::vector<std::size_t> candidates;
        for (std::size_t i = 0; i < entries_.size(); ++i) {
            if (entries_[i].id == report.id && Live(entries_[i], now)) candidates.push_back(i);
        }
        if (candidates.empty()) return Fail(report.text + " for no entry still pending");
        // Of several entries with the ID, a take is one that needs no consent
        // if there is one, a cancel one that does: as with removals, what the
        // model keeps never asks for more consent than what the program keeps.
        auto chosen = std::find_if(candidates.begin(), candidates.end(),
                                   [&](std::size_t i) { return report.cancel == entries_[i].NeedsConsent(); });
        if (report.cancel && chosen == candidates.end()) chosen = candidates.begin();
        for (auto next = candidates.begin(); chosen == candidates.end() && next != candidates.end(); ++next) {
            takes_.emplace_back(*next, now);
            std::vector<char> seen(confirmations_.size(), 0);
            if (Augment(takes_.size() - 1, seen)) {
                chosen = next;
            } else {
                takes_.pop_back();
            }
        }
        if (chosen == candidates.end()) {
            chosen = candidates.begin();
            const Entry& e = entries_[*chosen];
            std::string shown;
            for (const Confirmation& c : confirmations_) {
                for (const std::size_t i : c.entries) shown += c.at > e.sent ? " \"" + entries_[i].title + '"' : "";
            }
            Fail("consent: " + report.text + " (\"" + e.title + "\", with a message, sent at " +
                 std::to_string(Since(e.sent)) + " s) with no confirmation mapped for it since; mapped since for:" +
                 (shown.empty() ? " none" : shown));
        }
        entries_[*chosen].reported = true;
        ++(report.cancel ? counts_.cancelled : entries_[*chosen].forced ? counts_.forced : counts_.taken);
    }

    // Reads the program's reports and the X events until `until`.
    void Pump(Clock::time_point until) {
        std::string payload;
        for (;;) {
            DrainX();
            std::size_t which = 0;
            const UIProcess::Event event = session_->Process().Next(
                payload, std::min(until, Clock::now() + milliseconds(100)), {ConnectionNumber(x_)}, &which);
            if (event == UIProcess::Event::Ended) throw ClientError{"the program ended while the soak ran"};
            if (event == UIProcess::Event::Frame) {
                for (const Report& report : ReadReports(payload)) Reported(report);
            }
            if (event == UIProcess::Event::Timeout && Clock::now() >= until) return;
        }
    }

    // Liveness and memory: every action and message withdrawn, quiet mode ended
    // and a forced action already overdue, whose report must come within 3 s.
    bool MinuteCheck(int minute) {
        std::vector<Command> document;
        RemoveAll(document);
        for (unsigned long long id = 1; id <= 8; ++id) {
            document.emplace_back().kind = Command::Kind::Remove;
            document.back().remove = {"Message", id};
        }
        document.emplace_back().kind = Command::Kind::QuietEnd;
        ActionCommand& forced = document.emplace_back().action;
        document.back().kind = Command::Kind::Action;
        forced.id = 9000000 + minute;
        forced.title = "Soak liveness " + std::to_string(minute);
        forced.deadline = milliseconds(-2000);
        forced.force = true;
        entries_.push_back({forced.id, forced.title, false, true, Clock::now(), {}});
        awaited_ = forced.id;
        const Clock::time_point sent = Clock::now();
        Send(document);
        while (awaited_ && Clock::now() < sent + seconds(3)) Pump(std::min(sent + seconds(3), Clock::now()));
        const double latency = std::chrono::duration<double>(Clock::now() - sent).count();
        if (awaited_) Fail("liveness: no ActionTaken id=" + std::to_string(*awaited_) + " within 3 s");
        Pump(Clock::now() + milliseconds(1500));
        const long kib = PrivateKiBOnADesktop(session_->Process().Pid());
        const Counts& c = counts_;
        std::printf("minute %d: %d documents (%d actions, %d removals, %d messages, %d quiet), %d clicks, %d keys, "
                    "%d opens; reported %d taken, %d cancelled, %d forced, %d snoozes; %d confirmations (%d by "
                    "title); liveness %.2f s; private memory %ld KiB\n",
                    minute, c.documents, c.actions, c.removals, c.messages, c.quiet, c.clicks, c.keys, c.opens,
                    c.taken, c.cancelled, c.forced, c.snoozes, c.confirmations, c.identified, latency, kib);
        std::fflush(stdout);
        counts_ = Counts{};
        // The kernel may drop clean pages (code) under pressure from elsewhere:
        // the reference is the larger sample of the first two minutes.
        if (minute <= 2) reference_ = std::max(reference_, kib);
        if (memory_ && minute > 2 && kib > reference_ + 256) {
            Fail("memory: " + std::to_string(kib - reference_) + " KiB more private memory than by minute 2");
        }
        return !awaited_;
    }

    XvfbServer xvfb_;
    std::mt19937_64 random_;
    bool memory_;
    std::unique_ptr<Session> session_;
    std::ofstream transcript_;
    Display* x_ = nullptr;
    XFontStruct* font_ = nullptr;
    Clock::time_point start_;
    std::vector<Entry> entries_;
    std::vector<Confirmation> confirmations_;
    // The takes that needed consent: the entry, and when it was reported.
    std::vector<std::pair<std::size_t, Clock::time_point>> takes_;
    Counts counts_{};
    std::optional<unsigned long long> awaited_;
    long reference_ = 0;
    int failures_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
    // Only ever the display this run starts: random input never reaches a desktop.
    if (getenv("DISPLAY") != nullptr || argc != 6) {
        std::fprintf(stderr, "usage, without DISPLAY: SoakDriver PROGRAM WORKDIR MINUTES SEED memory|no-memory\n");
        return 2;
    }
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) std::signal(signal, EndChildren);
    Soak soak(std::strtoull(argv[4], nullptr, 10), std::string(argv[5]) == "memory");
    return soak.Run(argv[1], argv[2], std::max(1, std::atoi(argv[3])));
}
