#pragma once

// A child process on the other end of the client pipe: the test writes frames
// to its standard input and reads frames from its standard output.

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

class ChildProcess {
public:
    ChildProcess() = default;
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    // Runs `program` with exactly `environment` (nothing is inherited).
    bool Exec(const std::string& program, const std::vector<std::string>& environment);
    // Runs `body` in a forked copy of this process; the child ends with _exit(body()).
    bool Fork(const std::function<int()>& body);

    bool WriteFrame(const std::string& payload);
    // The next frame, or nothing when none came whole within `timeout` or the output ended.
    std::optional<std::string> ReadFrame(std::chrono::milliseconds timeout);
    // WEXITSTATUS once ended, -1 after a signal; nothing while it still runs after `timeout`.
    std::optional<int> WaitForExit(std::chrono::milliseconds timeout);

private:
    bool Spawn(const std::function<void()>& inChild);

    pid_t pid_ = -1;
    int input_ = -1;
    int output_ = -1;
    std::string buffered_;
};

// A ClientToUI document carrying an InitializationInfo with `baseDirectory`
// and no support files, UseLocale off.
std::string InitializationDocument(const std::string& baseDirectory);
