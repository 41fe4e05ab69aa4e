#pragma once

// A child process on the other end of the client pipe: the test writes frames
// to its standard input and reads frames from its standard output. The object
// only ever signals and reaps the process it forked itself, and only from the
// process that forked it: a forked copy of the test that inherits the object
// leaves the child alone.

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "pipe/FrameReader.h"

class ChildProcess {
public:
    ChildProcess() = default;
    // Kills (SIGKILL) and reaps a child still running.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    // Child descriptor -> the test's descriptor it becomes, applied after the
    // pipes, so an entry for 0 or 1 replaces a pipe.
    using Descriptors = std::map<int, int>;

    // Runs `program` with exactly `environment` (nothing is inherited) and the
    // arguments after argv[0].
    bool Exec(const std::string& program, const std::vector<std::string>& environment,
              const std::vector<std::string>& arguments = {}, const Descriptors& descriptors = {});
    // Runs `body` in a forked copy of this process; the child ends with _exit(body()).
    bool Fork(const std::function<int()>& body);

    // The payload behind its 4-byte little-endian length.
    bool WriteFrame(const std::string& payload);
    // Ends the child's standard input.
    void CloseInput();
    // The next frame, or nothing when none came whole within `timeout` or the output ended.
    std::optional<std::string> ReadFrame(std::chrono::milliseconds timeout);
    // The exit status once ended, minus the signal's number after a signal;
    // nothing while it still runs after `timeout`.
    std::optional<int> WaitForExit(std::chrono::milliseconds timeout);
    // SIGTERM, then SIGKILL if it has not ended within `grace`; reaped either way.
    void Stop(std::chrono::milliseconds grace);

    // From the next start on, the child gets `signal` when the thread that
    // started it ends, however it ends (a crash, SIGKILL), so nothing it
    // started outlives a test that died. 0 (the default): no such signal.
    void SetDeathSignal(int signal) { deathSignal_ = signal; }

    bool Running() const { return pid_ > 0; }
    pid_t Pid() const { return pid_; }

private:
    bool Spawn(const std::function<void()>& inChild, const Descriptors& descriptors);
    bool Owned() const;

    pid_t pid_ = -1;
    pid_t owner_ = -1;
    int deathSignal_ = 0;
    int input_ = -1;
    int output_ = -1;
    FrameReader frames_;
};

// A ClientToUI document carrying an InitializationInfo with `baseDirectory`
// and no support files, UseLocale off.
std::string InitializationDocument(const std::string& baseDirectory);

// What comes from `fd` until it holds `end`, the output ends, or `timeout`
// runs out (with `end` then missing).
std::string ReadUntil(int fd, const std::string& end, std::chrono::milliseconds timeout);
