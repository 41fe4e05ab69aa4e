#include "client/Scenario.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>

#include "client/WellFormed.h"

namespace {

// A reason, thrown up to the line loop, which adds the file and line.
struct Reason {
    std::string text;
};

// One word of a line: `force`, `id=42`, `title="Two words"`.
struct Word {
    std::string key;
    std::string value;
    bool hasValue = false;
};

// Splits a line into words. Double quotes group blanks into a value, with
// \" \\ and \n inside them; "#" at the start of a word ends the line.
std::vector<Word> SplitWords(const std::string& line) {
    std::vector<Word> words;
    std::size_t i = 0;
    while (i < line.size()) {
        if (line[i] == ' ' || line[i] == '\t' || line[i] == '\r') {
            ++i;
            continue;
        }
        if (line[i] == '#') break;
        Word word;
        std::string* into = &word.key;
        while (i < line.size() && line[i] != ' ' && line[i] != '\t' && line[i] != '\r') {
            const char c = line[i++];
            if (c == '=' && !word.hasValue) {
                word.hasValue = true;
                into = &word.value;
            } else if (c == '"') {
                for (;;) {
                    if (i >= line.size()) throw Reason{"a quoted text is not closed"};
                    char q = line[i++];
                    if (q == '"') break;
                    if (q == '\\' && i < line.size()) {
                        q = line[i++];
                        if (q == 'n') q = '\n';
                    }
                    into->push_back(q);
                }
            } else {
                into->push_back(c);
            }
        }
        words.push_back(std::move(word));
    }
    return words;
}

unsigned long long ReadId(const std::string& text) {
    if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos || text.size() > 20) {
        throw Reason{"\"" + text + "\" is not an ID (digits only)"};
    }
    errno = 0;
    const unsigned long long value = std::strtoull(text.c_str(), nullptr, 10);
    if (errno == ERANGE) throw Reason{"the ID " + text + " is too large"};
    return value;
}

Milliseconds ReadDuration(const std::string& text, bool relative) {
    std::string body = text;
    if (relative) {
        if (body.empty() || body[0] != '+') throw Reason{"\"" + text + "\" must be relative, like +30s"};
        body.erase(0, 1);
    }
    // A bare number was once taken as seconds, which read "15" meant as
    // minutes as a quarter of a minute.
    if (!body.empty() && body.find_first_not_of("0123456789.") == std::string::npos) {
        throw Reason{text + " what? write " + text + "s, " + text + "m or " + text + "h"};
    }
    const std::optional<Milliseconds> value = ParseDuration(body);
    if (!value) throw Reason{"\"" + text + "\" is not a duration (like 500ms, 2s, 1.5m, 1h)"};
    return *value;
}

bool ReadBool(const std::string& text) {
    if (text == "true" || text == "yes" || text == "on") return true;
    if (text == "false" || text == "no" || text == "off") return false;
    throw Reason{"\"" + text + "\" is not true or false"};
}

// The words after the command name, by key, each allowed once and known.
class Arguments {
public:
    Arguments(const std::vector<Word>& words, std::size_t first, std::map<std::string, bool> known)
        : known_(std::move(known)) {
        for (std::size_t i = first; i < words.size(); ++i) {
            const Word& word = words[i];
            const auto found = known_.find(word.key);
            if (found == known_.end()) throw Reason{"unknown argument \"" + word.key + "\""};
            // true: key=value; false: a bare flag.
            if (found->second != word.hasValue) {
                throw Reason{found->second ? "\"" + word.key + "\" needs a value (" + word.key + "=...)"
                                           : "\"" + word.key + "\" is a flag and takes no value"};
            }
            if (!values_.emplace(word.key, word.value).second) throw Reason{"\"" + word.key + "\" is given twice"};
        }
    }

    bool Has(const std::string& key) const { return values_.count(key) != 0; }
    const std::string& Get(const std::string& key) const {
        const auto found = values_.find(key);
        if (found == values_.end()) throw Reason{"\"" + key + "=\" is missing"};
        return found->second;
    }
    std::optional<std::string> Optional(const std::string& key) const {
        if (!Has(key)) return std::nullopt;
        return Get(key);
    }

private:
    std::map<std::string, bool> known_;
    std::map<std::string, std::string> values_;
};

Command ReadCommand(const std::vector<Word>& words, std::size_t first, bool inScenario) {
    if (first >= words.size()) throw Reason{"a command is missing"};
    const Word& head = words[first];
    if (head.hasValue) throw Reason{"a command is missing before \"" + head.key + "=\""};
    const std::string& name = head.key;
    Command command;
    using Kind = Command::Kind;
    if (name == "action") {
        const Arguments a(words, first + 1,
                          {{"id", true}, {"title", true}, {"text", true}, {"preview", true}, {"confirm", true},
                           {"deadline", true}, {"cancellable", false}, {"restart", false}, {"shutdown", false},
                           {"force", false}, {"save", false}, {"canned", false}});
        command.kind = Kind::Action;
        ActionCommand& action = command.action;
        action.id = ReadId(a.Get("id"));
        action.title = a.Optional("title").value_or("");
        action.text = a.Optional("text").value_or("");
        action.preview = a.Optional("preview");
        action.confirm = a.Optional("confirm");
        if (a.Has("deadline")) action.deadline = ReadDuration(a.Get("deadline"), true);
        action.cancellable = a.Has("cancellable");
        action.restart = a.Has("restart");
        action.shutdown = a.Has("shutdown");
        action.force = a.Has("force");
        action.save = a.Has("save");
        action.canned = a.Has("canned");
        if (action.force && !action.deadline) throw Reason{"a forced action needs a deadline"};
    } else if (name == "remove") {
        const Arguments a(words, first + 1, {{"id", true}, {"type", true}});
        command.kind = Kind::Remove;
        command.remove.id = ReadId(a.Get("id"));
        command.remove.type = a.Optional("type").value_or("All");
        const std::string& type = command.remove.type;
        if (type != "Action" && type != "Offer" && type != "Message" && type != "All") {
            throw Reason{"type must be Action, Offer, Message or All"};
        }
    } else if (name == "message") {
        const Arguments a(words, first + 1,
                          {{"id", true}, {"title", true}, {"text", true}, {"timeout", true}, {"completion", false}});
        command.kind = Kind::Message;
        command.message.id = ReadId(a.Get("id"));
        command.message.title = a.Optional("title").value_or("");
        command.message.text = a.Optional("text").value_or("");
        if (a.Has("timeout")) command.message.timeout = ReadDuration(a.Get("timeout"), false);
        command.message.completion = a.Has("completion");
    } else if (name == "quiet-start") {
        const Arguments a(words, first + 1, {{"start", true}, {"end", true}});
        command.kind = Kind::QuietStart;
        command.quietStart.start = a.Has("start") ? ReadDuration(a.Get("start"), true) : Milliseconds(0);
        command.quietStart.end = ReadDuration(a.Get("end"), true);
        if (command.quietStart.end < command.quietStart.start) throw Reason{"the quiet period ends before it starts"};
    } else if (name == "quiet-end" || name == "open" || name == "close" || name == "quit") {
        const Arguments a(words, first + 1, {});
        command.kind = name == "quiet-end" ? Kind::QuietEnd : name == "open" ? Kind::Open
                     : name == "close"     ? Kind::Close    : Kind::Quit;
        if (inScenario && command.kind == Kind::Quit) throw Reason{"\"quit\" is for interactive use; use \"close\""};
    } else if (name == "mark") {
        if (words.size() > first + 2) throw Reason{"a mark has one name"};
        command.kind = Kind::Mark;
        command.text = words.size() > first + 1 ? words[first + 1].key : "mark";
    } else if (name == "expect" && inScenario) {
        if (words.size() <= first + 1) throw Reason{"expect what? (ActionTaken, RemindTime, ...)"};
        command.kind = Kind::Expect;
        ExpectCommand& expect = command.expect;
        expect.kind = words[first + 1].key;
        if (expect.kind != "ActionTaken" && expect.kind != "RemindTime" && expect.kind != "RemindInterval" &&
            expect.kind != "ClientUIErrorMessage") {
            throw Reason{"cannot expect \"" + expect.kind + "\""};
        }
        const Arguments a(words, first + 2, {{"id", true}, {"cancel", true}, {"within", true}});
        if (a.Has("id")) expect.id = ReadId(a.Get("id"));
        if (a.Has("cancel")) expect.cancel = ReadBool(a.Get("cancel"));
        if (a.Has("within")) expect.within = ReadDuration(a.Get("within"), false);
    } else if (name == "document" && inScenario) {
        const Arguments a(words, first + 1, {});
        command.kind = Kind::Document;
    } else {
        throw Reason{"unknown command \"" + name + "\""};
    }
    return command;
}

std::string Directory(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : path.substr(0, slash + 1 == 1 ? 1 : slash);
}

bool ReadFile(const std::string& path, std::string& bytes) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return false;
    std::ostringstream content;
    content << in.rdbuf();
    bytes = content.str();
    return !in.bad();
}

// The initial settings and support files, before the first "at".
void ReadHeader(Scenario& scenario, const std::vector<Word>& words) {
    const std::string& name = words[0].key;
    if (name == "set") {
        if (words.size() != 3) throw Reason{"use: set NAME VALUE"};
        const std::string& key = words[1].key;
        const std::string& value = words[2].key;
        if (key == "remind-interval") {
            scenario.remindInterval = ReadDuration(value, false);
        } else if (key == "remind-time") {
            scenario.remindTime = ReadDuration(value, true);
        } else if (key == "allow-snooze") {
            scenario.allowSnooze = ReadBool(value);
        } else if (key == "use-locale") {
            scenario.useLocale = ReadBool(value);
        } else {
            throw Reason{"unknown setting \"" + key + "\""};
        }
    } else if (name == "file") {
        if (words.size() < 2 || words[1].hasValue) throw Reason{"use: file PATH [name=NAME] [folder=NAME]"};
        const Arguments a(words, 2, {{"name", true}, {"folder", true}});
        const std::string& relative = words[1].key;
        const std::string full = relative[0] == '/' ? relative : Directory(scenario.path) + "/" + relative;
        SupportFile file;
        file.name = a.Optional("name").value_or(relative.substr(relative.rfind('/') + 1));
        file.subFolder = a.Optional("folder").value_or("");
        for (const std::string* part : {&file.name, &file.subFolder}) {
            if (part->find('/') != std::string::npos || *part == "." || *part == ".." || part->size() > 255) {
                throw Reason{"\"" + *part + "\" is not a plain file name"};
            }
        }
        if (!ReadFile(full, file.bytes)) throw Reason{"cannot read " + full};
        scenario.files.push_back(std::move(file));
    } else if (name == "locale") {
        if (words.size() != 2) throw Reason{"use: locale NAME"};
        scenario.locale = words[1].key;
    } else {
        throw Reason{"unknown command \"" + name + "\""};
    }
}

// Checks a finished document, whose "document" command is on `commandLine`
// and whose "|" lines follow it directly; on a fault `number` becomes the
// line to report.
void EndDocument(const Command& document, int commandLine, int& number) {
    if (document.text.empty()) {
        number = commandLine;
        throw Reason{"the document has no \"|\" lines"};
    }
    if (const std::optional<XMLFault> fault = CheckWellFormed(document.text)) {
        // A document cut short is found after its last line: named by that line.
        const int lines = static_cast<int>(std::count(document.text.begin(), document.text.end(), '\n'));
        number = commandLine + std::min(fault->line, lines);
        throw Reason{"the document is not well-formed XML: " + fault->reason};
    }
}

}  // namespace

std::string ScenarioError::Text() const {
    if (file.empty()) return reason;
    return file + ":" + std::to_string(line) + ": " + reason;
}

bool Command::IsRecord() const {
    return kind == Kind::Action || kind == Kind::Remove || kind == Kind::Message || kind == Kind::QuietStart ||
           kind == Kind::QuietEnd;
}

std::optional<Milliseconds> ParseDuration(const std::string& text) {
    std::size_t digits = 0;
    while (digits < text.size() && (std::isdigit(static_cast<unsigned char>(text[digits])) || text[digits] == '.')) {
        ++digits;
    }
    const std::string number = text.substr(0, digits);
    const std::string unit = text.substr(digits);
    if (number.empty() || number == "." || number.find('.') != number.rfind('.') || number.size() > 12) {
        return std::nullopt;
    }
    static const std::map<std::string, double> kUnits = {
        {"", 1000.0}, {"ms", 1.0}, {"s", 1000.0}, {"m", 60000.0}, {"h", 3600000.0}};
    const auto found = kUnits.find(unit);
    if (found == kUnits.end()) return std::nullopt;
    return Milliseconds(static_cast<long long>(std::llround(std::strtod(number.c_str(), nullptr) * found->second)));
}

Command ParseCommand(const std::string& line) {
    try {
        return ReadCommand(SplitWords(line), 0, false);
    } catch (const Reason& reason) {
        throw ScenarioError{"", 0, reason.text};
    }
}

Scenario ParseScenario(const std::string& text, const std::string& path) {
    Scenario scenario;
    scenario.path = path;
    std::istringstream lines(text);
    std::string line;
    int number = 0;
    // The document that "|" lines continue, if the last command was one.
    Command* document = nullptr;
    int documentLine = 0;
    try {
        while (std::getline(lines, line)) {
            ++number;
            const std::size_t start = line.find_first_not_of(" \t");
            if (start != std::string::npos && line[start] == '|') {
                if (document == nullptr) throw Reason{"a \"|\" line belongs under a \"document\" command"};
                document->text += line.substr(start + 1 + (line.size() > start + 1 && line[start + 1] == ' ')) + "\n";
                continue;
            }
            if (document != nullptr) EndDocument(*document, documentLine, number);
            document = nullptr;
            const std::vector<Word> words = SplitWords(line);
            if (words.empty()) continue;
            const std::string& head = words[0].key;
            if (head == "at") {
                if (words.size() < 3) throw Reason{"use: at TIME COMMAND ..."};
                Step step;
                step.line = number;
                step.at = ReadDuration(words[1].key, false);
                if (!scenario.steps.empty() && step.at < scenario.steps.back().at) {
                    throw Reason{"times must not go backwards (" + words[1].key + " after an earlier, later time)"};
                }
                if (!scenario.steps.empty() && scenario.steps.back().commands.back().kind == Command::Kind::Close) {
                    throw Reason{"nothing can follow \"close\""};
                }
                step.commands.push_back(ReadCommand(words, 2, true));
                scenario.steps.push_back(std::move(step));
                if (scenario.steps.back().commands.back().kind == Command::Kind::Document) {
                    document = &scenario.steps.back().commands.back();
                    documentLine = number;
                }
            } else if (head == "and") {
                if (scenario.steps.empty()) throw Reason{"\"and\" continues an \"at\" line; there is none yet"};
                Step& step = scenario.steps.back();
                Command command = ReadCommand(words, 1, true);
                if (!command.IsRecord() || !step.commands.back().IsRecord()) {
                    throw Reason{"only records (action, remove, message, quiet-start, quiet-end) share a document"};
                }
                step.commands.push_back(std::move(command));
            } else if (scenario.steps.empty()) {
                ReadHeader(scenario, words);
            } else {
                throw Reason{"\"" + head + "\" belongs before the first \"at\", or needs \"at TIME\" in front"};
            }
        }
        if (document != nullptr) EndDocument(*document, documentLine, number);
        if (scenario.steps.empty()) throw Reason{"the scenario has no \"at\" lines"};
    } catch (const Reason& reason) {
        throw ScenarioError{path, number, reason.text};
    }
    return scenario;
}

Scenario LoadScenario(const std::string& path) {
    std::string text;
    if (!ReadFile(path, text)) throw ScenarioError{path, 0, "cannot read the file"};
    return ParseScenario(text, path);
}
