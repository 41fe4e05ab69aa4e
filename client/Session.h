#pragma once

// One run of the program under the sample client: start it, wait for its
// readiness, initialise it, play a scenario or typed commands, close the pipe
// and collect the exit status. Everything the program reports is printed as
// it comes, one time-stamped line per record.

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "client/BaseDirectory.h"
#include "client/ClientDocuments.h"
#include "client/Scenario.h"
#include "client/UIProcess.h"

struct SessionOptions {
    std::string program;
    std::vector<std::string> arguments;
    // The program's whole environment (DISPLAY included); a scenario's locale
    // is added to it.
    std::vector<std::string> environment;
    // Empty: a fresh directory of the client's own.
    std::string baseDirectory;
    Milliseconds readyTimeout{10000};
    // From closing the pipe to the program's exit (it pauses 2 s on the way out).
    Milliseconds exitTimeout{15000};
    // Print the documents as XML instead of one line per record.
    bool raw = false;
    // Run by /bin/sh at every "mark" step, with ZAM_MARK set to the mark's name
    // and DISPLAY to the program's.
    std::string markCommand;
    // Readable when the run must stop (a signal arrived); -1: none.
    int interruptFd = -1;
    // Divides the times of "at" steps and the waits of "expect ... within=",
    // for quick previews and tests. The times in the documents (deadlines,
    // message time-outs, quiet periods, remind times) stay as written.
    double speed = 1.0;
};

class Session {
public:
    Session(SessionOptions options, std::ostream& transcript);
    ~Session();

    // Starts the program, waits for ReadyForData and sends the scenario's
    // initialisation alone in its document. Throws ClientError.
    void Start(const Scenario& scenario);
    // The scenario's steps at their times. Throws ClientError.
    void Play(const Scenario& scenario);
    // Commands typed on `input`, one a line, until "quit" or the end of input.
    void Interactive(int input);
    // Closes the pipe, prints what still comes and returns the exit status.
    // Throws ClientError when the program does not end in time (it is
    // killed) or reported an error on its way out.
    int Finish();

    // The parts a harness drives directly.
    void SendRecords(const std::vector<Command>& commands);
    void SendDocument(const std::string& document);
    // Waits until `until` for a report of `kind` (and `id`, when given) not
    // taken yet, printing everything that comes meanwhile.
    std::optional<Report> WaitFor(const std::string& kind, std::optional<unsigned long long> id,
                                  SteadyClock::time_point until);
    // Reports that arrive until `until`, and are not taken by a WaitFor.
    std::vector<Report> Collect(SteadyClock::time_point until);
    UIProcess& Process() { return process_; }
    const std::string& BaseDirectoryPath() const { return base_->Path(); }
    // The program's DISPLAY; empty when it has none.
    const std::string& DisplayName() const { return display_; }

private:
    // Reads and prints what the program sends until `until` or until `done`
    // says enough. An end of the program's output is an error unless the
    // pipe was closed first. `watched` as for UIProcess::Next; returns its
    // index when one became readable.
    std::optional<std::size_t> Pump(SteadyClock::time_point until, const std::function<bool()>& done,
                                    const std::vector<int>& watched = {});
    // A scenario time at the run's speed.
    SteadyClock::duration Scaled(Milliseconds length) const;
    void Run(const Command& command, const std::string& where);
    void Expect(const ExpectCommand& expect, const std::string& where);
    void Mark(const std::string& name);
    void Open(bool mustReach);
    void Print(const std::string& line);
    [[noreturn]] void EndedEarly();

    SessionOptions options_;
    std::ostream& out_;
    std::unique_ptr<BaseDirectory> base_;
    UIProcess process_;
    std::deque<Report> untaken_;
    bool closed_ = false;
    bool ended_ = false;
    bool reportedError_ = false;
    std::string display_;
};

// What the program's exit status tells: "exit status N", and for 255 that it
// could not open the display `display` (empty: DISPLAY is not set) or the X
// server reported an error.
std::string DescribeExitStatus(int status, const std::string& display);

// Nothing when `locale` can be used; else what is wrong and the command that
// generates it.
std::optional<std::string> MissingLocale(const std::string& locale);

// The environment of this process, which the program inherits.
std::vector<std::string> ProgramEnvironment();
