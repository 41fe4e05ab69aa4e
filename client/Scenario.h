#pragma once

// A scenario: what the sample client tells the program, and when. Plain text,
// one command a line, read whole before anything starts so that a mistake is
// reported with its file and line instead of halfway through a run.
//
//   # a comment
//   set remind-interval 15m          initial settings (before the first "at")
//   file de.xlat                     a support file, relative to the scenario
//   locale de_DE.UTF-8               the locale the program is started in
//   at 0s  action id=1 title="Update" deadline=+30s force
//   and    quiet-start end=+10s      same document as the line before
//   at 2s  expect ActionTaken id=1 within=10s
//   at 3s  document                  a whole well-formed document, verbatim:
//   | <ClientToUI><QuietModeEnd></QuietModeEnd></ClientToUI>
//   at 4s  mark screenshot
//
// Times after "at" count from the moment the initialisation was sent; times
// with a "+" count from the moment their document is sent.

#include <chrono>
#include <optional>
#include <string>
#include <vector>

using Milliseconds = std::chrono::milliseconds;

// A scenario or command line that cannot be understood.
struct ScenarioError {
    std::string file;
    int line = 0;
    std::string reason;

    // "file:line: reason", or only the reason for a typed command.
    std::string Text() const;
};

struct ActionCommand {
    unsigned long long id = 0;
    std::string title;
    std::string text;
    std::optional<std::string> preview;
    std::optional<std::string> confirm;
    std::optional<Milliseconds> deadline;
    bool cancellable = false;
    bool restart = false;
    bool shutdown = false;
    bool force = false;
    bool save = false;
    bool canned = false;
};

struct RemoveCommand {
    // As the RemoveType word: Action, Offer, Message or All.
    std::string type = "All";
    unsigned long long id = 0;
};

struct MessageCommand {
    unsigned long long id = 0;
    std::string title;
    std::string text;
    std::optional<Milliseconds> timeout;
    bool completion = false;
};

struct QuietStartCommand {
    Milliseconds start{0};
    Milliseconds end{0};
};

struct ExpectCommand {
    // ActionTaken, RemindTime, RemindInterval or ClientUIErrorMessage.
    std::string kind;
    std::optional<unsigned long long> id;
    std::optional<bool> cancel;
    Milliseconds within{10000};
};

struct Command {
    enum class Kind { Action, Remove, Message, QuietStart, QuietEnd, Document, Open, Expect, Mark, Close, Quit };

    // Whether the command is a record that shares a document with others.
    bool IsRecord() const;

    Kind kind = Kind::Quit;
    ActionCommand action;
    RemoveCommand remove;
    MessageCommand message;
    QuietStartCommand quietStart;
    ExpectCommand expect;
    // The verbatim document, or the name of a mark.
    std::string text;
};

// Commands sent or done together at one moment; records among them travel in
// one document.
struct Step {
    Milliseconds at{0};
    int line = 0;
    std::vector<Command> commands;
};

struct SupportFile {
    std::string name;
    std::string subFolder;
    std::string bytes;
};

struct Scenario {
    std::string path;
    Milliseconds remindInterval{0};
    std::optional<Milliseconds> remindTime;
    bool allowSnooze = true;
    // The program's texts in the locale's encoding, so a UTF-8 desktop shows
    // accents as its users will see them.
    bool useLocale = true;
    std::string locale;
    std::vector<SupportFile> files;
    std::vector<Step> steps;
};

// Reads and checks a whole scenario file; throws ScenarioError.
Scenario LoadScenario(const std::string& path);
// The same from text; `path` names it in errors and anchors relative files.
Scenario ParseScenario(const std::string& text, const std::string& path);

// One command as typed in interactive mode ("action id=3 title=Hi", "open",
// "quit"); throws ScenarioError without a file or line. "document" and
// "expect" are scenario-only.
Command ParseCommand(const std::string& line);

// "250ms", "2s", "1.5s", "3m", "1h"; a bare number is seconds (the command
// line's --ready-timeout), which a scenario refuses as ambiguous.
std::optional<Milliseconds> ParseDuration(const std::string& text);
