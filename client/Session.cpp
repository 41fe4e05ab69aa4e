#include "client/Session.h"

#include <locale.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstring>

#include "base/time/Instant.h"
#include "client/OpenDialogRequest.h"
#include "protocol/InitializationInfo.h"

extern char** environ;

namespace {

// The wall-clock time of day with milliseconds: "12:00:03.120".
std::string Stamp() {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    tm local{};
    localtime_r(&now.tv_sec, &local);
    char text[32];
    std::snprintf(text, sizeof text, "%02d:%02d:%02d.%03ld", local.tm_hour, local.tm_min, local.tm_sec,
                  now.tv_nsec / 1000000);
    return text;
}

// The current time as the protocol counts it, to the millisecond: relative
// times in a scenario are measured from the moment of sending.
Instant NowForDocuments() {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return Instant(std::int64_t{now.tv_sec} * 1000000 + now.tv_nsec / 1000);
}

std::string Seconds(Milliseconds length) {
    char text[48];
    std::snprintf(text, sizeof text, "%g s", static_cast<double>(length.count()) / 1000.0);
    return text;
}

// "10", "2.5": a speed factor as the command line gave it.
std::string Factor(double speed) {
    char text[48];
    std::snprintf(text, sizeof text, "%g", speed);
    return text;
}

// "-f UTF-8" for a name with ".utf8", ".UTF-8" and the like.
std::string CharmapOf(const std::string& codeset) {
    std::string folded;
    for (const char c : codeset) {
        if (c != '-') folded += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    }
    return folded == "UTF8" ? "UTF-8" : codeset;
}

std::string Describe(const Command& command) {
    switch (command.kind) {
        case Command::Kind::Action: return "ActionRequest id=" + std::to_string(command.action.id);
        case Command::Kind::Remove:
            return "RemoveRequest id=" + std::to_string(command.remove.id) + " type=" + command.remove.type;
        case Command::Kind::Message: return "MessageRequest id=" + std::to_string(command.message.id);
        case Command::Kind::QuietStart: return "QuietModeStart";
        case Command::Kind::QuietEnd: return "QuietModeEnd";
        default: return "";
    }
}

bool Matches(const Report& report, const std::string& kind, std::optional<unsigned long long> id,
             std::optional<bool> cancel = std::nullopt) {
    return report.kind == kind && (!id || report.id == *id) && (!cancel || report.cancel == *cancel);
}

}  // namespace

std::string DescribeExitStatus(int status, const std::string& display) {
    std::string text = "exit status " + std::to_string(status);
    if (status != 255) return text;
    // The program's one status for an X failure; at the start it almost
    // always means the display.
    return text + ": the program could not open the display " +
           (display.empty() ? std::string("(DISPLAY is not set)") : "\"" + display + "\"") +
           ", or the X server reported an error; check DISPLAY and that this user may use that X server "
           "(XAUTHORITY, xhost)";
}

std::optional<std::string> MissingLocale(const std::string& locale) {
    if (const locale_t found = newlocale(LC_ALL_MASK, locale.c_str(), locale_t(0))) {
        freelocale(found);
        return std::nullopt;
    }
    // language_territory[.codeset][@modifier]: localedef takes the codeset
    // as the character map and the rest as the source.
    const std::size_t at = locale.find('@');
    const std::string modifier = at == std::string::npos ? "" : locale.substr(at);
    const std::string name = locale.substr(0, at);
    const std::size_t dot = name.find('.');
    const std::string source = name.substr(0, dot) + modifier;
    const std::string charmap = dot == std::string::npos ? "CHARMAP" : CharmapOf(name.substr(dot + 1));
    std::string text = "the locale \"" + locale + "\" is not installed; generate it as root with: localedef -i " +
                       source + " -f " + charmap + " " + locale;
    if (dot == std::string::npos) text += " (CHARMAP: the character set, such as UTF-8)";
    return text;
}

std::vector<std::string> ProgramEnvironment() {
    std::vector<std::string> environment;
    for (char** entry = environ; *entry != nullptr; ++entry) environment.push_back(*entry);
    return environment;
}

Session::Session(SessionOptions options, std::ostream& transcript) : options_(std::move(options)), out_(transcript) {
    for (const std::string& entry : options_.environment) {
        if (entry.rfind("DISPLAY=", 0) == 0) display_ = entry.substr(8);
    }
}

Session::~Session() { process_.Stop(std::chrono::milliseconds(0)); }

void Session::Print(const std::string& line) { out_ << Stamp() << ' ' << line << std::endl; }

void Session::Start(const Scenario& scenario) {
    // Before anything is made: the program would otherwise run in the "C"
    // locale without a word.
    if (!scenario.locale.empty()) {
        if (const std::optional<std::string> missing = MissingLocale(scenario.locale)) throw ClientError{*missing};
    }
    base_ = std::make_unique<BaseDirectory>(options_.baseDirectory);
    std::vector<std::string> environment = options_.environment;
    if (!scenario.locale.empty()) {
        for (auto entry = environment.begin(); entry != environment.end();) {
            const bool locale = entry->rfind("LC_ALL=", 0) == 0 || entry->rfind("LANG=", 0) == 0;
            entry = locale ? environment.erase(entry) : entry + 1;
        }
        environment.push_back("LC_ALL=" + scenario.locale);
        environment.push_back("LANG=" + scenario.locale);
    }
    process_.Start(options_.program, options_.arguments, environment);
    Print("started " + options_.program + " (pid " + std::to_string(process_.Pid()) + "), base directory " +
          base_->Path());
    if (!WaitFor("ReadyForData", std::nullopt, SteadyClock::now() + options_.readyTimeout)) {
        throw ClientError{"the program sent no ReadyForData within " + Seconds(options_.readyTimeout)};
    }
    if (options_.speed != 1.0) {
        Print("playing at --speed " + Factor(options_.speed) + ": \"at\" and \"within\" times are divided by " +
              Factor(options_.speed) + ", the times sent to the program are not");
    }
    InitializationInfo info = ScenarioInitialization(scenario, base_->Path(), NowForDocuments());
    SendDocument(InitializationInfoDocument(info));
    Print(">> InitializationInfo files=" + std::to_string(info.supportFiles.size()));
}

void Session::SendDocument(const std::string& document) {
    process_.Send(document);
    if (options_.raw) out_ << Stamp() << " >>\n" << document << std::endl;
}

void Session::SendRecords(const std::vector<Command>& commands) {
    SendDocument(RecordsDocument(commands, NowForDocuments()));
    if (options_.raw) return;
    std::string line = ">>";
    for (const Command& command : commands) line += (line.size() > 2 ? " + " : " ") + Describe(command);
    Print(line);
}

std::optional<std::size_t> Session::Pump(SteadyClock::time_point until, const std::function<bool()>& done,
                                         const std::vector<int>& watched) {
    std::vector<int> all = watched;
    if (options_.interruptFd >= 0) all.push_back(options_.interruptFd);
    while (!done()) {
        std::string payload;
        std::size_t which = 0;
        switch (process_.Next(payload, until, all, &which)) {
            case UIProcess::Event::Timeout: return std::nullopt;
            case UIProcess::Event::Watched:
                if (which == watched.size()) throw ClientError{"interrupted by a signal"};
                return which;
            case UIProcess::Event::Ended:
                ended_ = true;
                if (!closed_) EndedEarly();
                return std::nullopt;
            case UIProcess::Event::Frame: break;
        }
        std::vector<Report> reports;
        try {
            reports = ReadReports(payload);
        } catch (const ReportUnreadable& unreadable) {
            throw ClientError{"the program sent a document that cannot be read (" + unreadable.reason + "): " +
                              payload.substr(0, 200)};
        }
        if (options_.raw) out_ << Stamp() << " <<\n" << payload << std::endl;
        for (Report& report : reports) {
            if (!options_.raw) Print(report.text);
            if (report.kind == "ClientUIErrorMessage") reportedError_ = true;
            untaken_.push_back(std::move(report));
        }
    }
    return std::nullopt;
}

void Session::EndedEarly() {
    // Its output closes only as it exits: the status follows at once.
    const std::optional<int> status = process_.WaitForExit(SteadyClock::now() + std::chrono::seconds(5));
    throw ClientError{status ? "the program ended before the client closed the pipe (" +
                                   DescribeExitStatus(*status, display_) + ")"
                             : std::string("the program closed its output before the client closed the pipe")};
}

std::optional<Report> Session::WaitFor(const std::string& kind, std::optional<unsigned long long> id,
                                       SteadyClock::time_point until) {
    std::optional<Report> found;
    const auto take = [&] {
        for (auto report = untaken_.begin(); report != untaken_.end(); ++report) {
            if (Matches(*report, kind, id)) {
                found = *report;
                untaken_.erase(report);
                return true;
            }
        }
        return false;
    };
    Pump(until, take);
    return found;
}

std::vector<Report> Session::Collect(SteadyClock::time_point until) {
    Pump(until, [] { return false; });
    std::vector<Report> reports(untaken_.begin(), untaken_.end());
    untaken_.clear();
    return reports;
}

void Session::Play(const Scenario& scenario) {
    const SteadyClock::time_point start = SteadyClock::now();
    for (const Step& step : scenario.steps) {
        Pump(start + Scaled(step.at), [] { return false; });
        const std::string where = scenario.path + ":" + std::to_string(step.line);
        if (step.commands.front().IsRecord()) {
            SendRecords(step.commands);
            continue;
        }
        for (const Command& command : step.commands) Run(command, where);
        if (closed_) return;
    }
}

SteadyClock::duration Session::Scaled(Milliseconds length) const {
    return std::chrono::duration_cast<SteadyClock::duration>(
        std::chrono::duration<double, std::milli>(static_cast<double>(length.count()) / options_.speed));
}

void Session::Run(const Command& command, const std::string& where) {
    switch (command.kind) {
        case Command::Kind::Document:
            SendDocument(command.text);
            if (!options_.raw) Print(">> document of " + std::to_string(command.text.size()) + " bytes (" + where + ")");
            break;
        case Command::Kind::Expect: Expect(command.expect, where); break;
        case Command::Kind::Mark: Mark(command.text); break;
        case Command::Kind::Open: Open(true); break;
        case Command::Kind::Close:
        case Command::Kind::Quit: closed_ = true; break;
        default: SendRecords({command}); break;
    }
}

void Session::Expect(const ExpectCommand& expect, const std::string& where) {
    std::optional<Report> found;
    const auto take = [&] {
        for (auto report = untaken_.begin(); report != untaken_.end(); ++report) {
            if (Matches(*report, expect.kind, expect.id, expect.cancel)) {
                found = *report;
                untaken_.erase(report);
                return true;
            }
        }
        return false;
    };
    Pump(SteadyClock::now() + Scaled(expect.within), take);
    if (!found) {
        std::string what = expect.kind;
        if (expect.id) what += " id=" + std::to_string(*expect.id);
        if (expect.cancel) what += std::string(" cancel=") + (*expect.cancel ? "true" : "false");
        std::string within = Seconds(expect.within);
        if (options_.speed != 1.0) {
            within += " (" + Seconds(std::chrono::duration_cast<Milliseconds>(Scaled(expect.within))) +
                      " at --speed " + Factor(options_.speed) + ")";
        }
        throw ClientError{where + ": no " + what + " came within " + within};
    }
}

void Session::Mark(const std::string& name) {
    Print("mark " + name);
    if (options_.markCommand.empty()) return;
    const std::string mark = "ZAM_MARK=" + name;
    const std::string display = "DISPLAY=" + display_;
    const pid_t parent = getpid();
    const pid_t pid = fork();
    if (pid == 0) {
        DieWithParent(parent);
        putenv(const_cast<char*>(mark.c_str()));
        if (!display_.empty()) putenv(const_cast<char*>(display.c_str()));
        execl("/bin/sh", "sh", "-c", options_.markCommand.c_str(), static_cast<char*>(nullptr));
        _exit(127);
    }
    if (pid < 0) throw ClientError{std::string("cannot run the mark command: ") + std::strerror(errno)};
    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        throw ClientError{"the mark command failed: " + options_.markCommand};
    }
}

void Session::Open(bool mustReach) {
    std::string error;
    const int reached = SendOpenRequest(display_, std::chrono::seconds(10), error);
    if (reached == 0) {
        const std::string why = error.empty() ? "no window ZAMClientUIHiddenWindow appeared" : error;
        if (mustReach) throw ClientError{"open request: " + why};
        std::fprintf(stderr, "zam-client: open request: %s\n", why.c_str());
        return;
    }
    Print("open request sent to " + std::to_string(reached) + " window(s)");
}

void Session::Interactive(int input) {
    std::string buffered;
    bool endOfInput = false;
    while (!closed_) {
        const std::size_t lineEnd = buffered.find('\n');
        if (lineEnd == std::string::npos && endOfInput) {
            if (buffered.empty()) return;
            buffered += '\n';
            continue;
        }
        if (lineEnd == std::string::npos) {
            if (!Pump(SteadyClock::time_point::max(), [] { return false; }, {input})) continue;
            char chunk[4096];
            const ssize_t got = read(input, chunk, sizeof chunk);
            if (got < 0 && errno == EINTR) continue;
            if (got <= 0) {
                endOfInput = true;
            } else {
                buffered.append(chunk, static_cast<std::size_t>(got));
            }
            continue;
        }
        const std::string line = buffered.substr(0, lineEnd);
        buffered.erase(0, lineEnd + 1);
        if (line.find_first_not_of(" \t\r") == std::string::npos) continue;
        if (line.find_first_not_of(" \t") == line.find("help")) {
            std::fprintf(stderr,
                         "commands: action id=N [title=T] [text=T] [deadline=+30s] [force] [restart] [shutdown]\n"
                         "          [cancellable] [save] [canned] [preview=T] [confirm=T]\n"
                         "          remove id=N [type=Action|Offer|Message|All]\n"
                         "          message id=N [title=T] [text=T] [timeout=10s] [completion]\n"
                         "          quiet-start end=+5m [start=+0s]   quiet-end   open   mark NAME   quit\n");
            continue;
        }
        try {
            const Command command = ParseCommand(line);
            if (command.kind == Command::Kind::Open) {
                Open(false);
            } else {
                Run(command, "input");
            }
        } catch (const ScenarioError& error) {
            std::fprintf(stderr, "zam-client: %s (type \"help\" for the commands)\n", error.Text().c_str());
        }
    }
}

int Session::Finish() {
    closed_ = true;
    process_.CloseInput();
    Print("closed the pipe");
    const SteadyClock::time_point until = SteadyClock::now() + options_.exitTimeout;
    if (!ended_) Pump(until, [this] { return ended_; });
    std::optional<int> status = process_.WaitForExit(until);
    if (!status) {
        process_.Stop(std::chrono::milliseconds(0));
        throw ClientError{"the program did not end within " + Seconds(options_.exitTimeout) +
                          " of the pipe closing; it was killed"};
    }
    Print("the program exited with status " + std::to_string(*status));
    if (reportedError_) throw ClientError{"the program reported an error (ClientUIErrorMessage) and ended"};
    return *status;
}
