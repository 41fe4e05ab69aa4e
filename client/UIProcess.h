#pragma once

// The program under the client: a child process with a pipe on its standard
// input and one on its standard output, spoken to in frames.
//
// The child gets a parent-death signal, so it cannot outlive the client even
// when the client is killed outright. The signal follows the thread that
// forked, so Start is called on the main thread.

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "pipe/FrameReader.h"

using SteadyClock = std::chrono::steady_clock;

// The clock the client's waits read; a test gives one it moves by hand.
using WaitClock = std::function<SteadyClock::time_point()>;
// One poll(2) of at most `milliseconds`, with its result.
using PollOnce = std::function<int(int milliseconds)>;

// Polls until something is ready or `until` has come on `now`. A single
// poll waits at most a minute and may come back early, so one that ends
// before the target polls again: a wait of any length ends at its target.
// poll's result: above 0 something is ready, 0 the target has come, below 0
// an error in errno (EINTR included, for the caller to judge).
int PollUntil(SteadyClock::time_point until, const PollOnce& poll, const WaitClock& now = SteadyClock::now);

// A failure that ends the client's run, with the message it prints.
struct ClientError {
    std::string message;
};

class UIProcess {
public:
    UIProcess() = default;
    // Kills and reaps a child still running.
    ~UIProcess();
    UIProcess(const UIProcess&) = delete;
    UIProcess& operator=(const UIProcess&) = delete;

    // Runs `program` with `arguments` (after argv[0]) and exactly `environment`.
    // Throws ClientError when it cannot be started.
    void Start(const std::string& program, const std::vector<std::string>& arguments,
               const std::vector<std::string>& environment);

    pid_t Pid() const { return pid_; }

    // Writes one frame. Throws ClientError when the child no longer reads.
    void Send(const std::string& payload);
    // Ends the child's standard input: the program takes it as the client
    // closing the pipe.
    void CloseInput();

    enum class Event {
        Frame,     // a whole frame is in `payload`
        Timeout,   // `until` passed
        Ended,     // the child closed its standard output
        Watched,   // one of the watched descriptors is readable
    };
    // Waits for the next frame until `until`, or for one of `watched` to become
    // readable (its index goes to `which`). Throws ClientError for a malformed
    // or oversized frame, or output that ends inside a frame.
    Event Next(std::string& payload, SteadyClock::time_point until, const std::vector<int>& watched = {},
               std::size_t* which = nullptr);

    // The exit status once the child has ended (128 + the signal's number
    // after a signal); nothing if it still runs at `until`.
    std::optional<int> WaitForExit(SteadyClock::time_point until);
    // SIGTERM, then SIGKILL if it has not ended within `grace`; reaped.
    void Stop(std::chrono::milliseconds grace);

private:
    pid_t pid_ = -1;
    int input_ = -1;
    int output_ = -1;
    bool outputEnded_ = false;
    FrameReader frames_;
    std::string buffer_;
};

// The child's side of a fork: the parent-death signal, and an exit at once if
// the parent is already gone (the signal would then never come).
void DieWithParent(pid_t parent);
