#include "tests/support/ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <thread>

#include "base/files/FileLocation.h"
#include "pipe/UnixIO.h"
#include "protocol/Documents.h"
#include "protocol/InitializationInfo.h"

namespace {

// The child's status as WaitForExit reports it.
int Outcome(int status) { return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status); }

void CloseIfOpen(int& fd) {
    if (fd >= 0) close(fd);
    fd = -1;
}

// Whether `fd` has something to read (or its end) before `deadline`.
bool Readable(int fd, std::chrono::steady_clock::time_point deadline) {
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        pollfd ready{fd, POLLIN, 0};
        const int polled = fd >= 0 && left.count() > 0 ? poll(&ready, 1, static_cast<int>(left.count())) : 0;
        if (polled >= 0 || errno != EINTR) return polled > 0;
    }
}

}  // namespace

ChildProcess::~ChildProcess() {
    CloseIfOpen(input_);
    CloseIfOpen(output_);
    if (Running() && Owned()) {
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
    }
}

bool ChildProcess::Owned() const { return getpid() == owner_; }

bool ChildProcess::Spawn(const std::function<void()>& inChild, const Descriptors& descriptors) {
    if (Running()) return false;
    int in[2];
    int out[2];
    if (pipe2(in, O_CLOEXEC) != 0) return false;
    if (pipe2(out, O_CLOEXEC) != 0) {
        close(in[0]);
        close(in[1]);
        return false;
    }
    // Buffered output would otherwise be written twice, once by each process.
    std::fflush(nullptr);
    const pid_t parent = getpid();
    const pid_t pid = fork();
    if (pid == 0) {
        // The parent may have died before the signal was asked for.
        if (deathSignal_ != 0 && (prctl(PR_SET_PDEATHSIG, deathSignal_) != 0 || getppid() != parent)) _exit(127);
        dup2(in[0], 0);
        dup2(out[1], 1);
        for (const auto& [target, source] : descriptors) {
            if (target == source) {
                fcntl(target, F_SETFD, 0);  // dup2 would keep close-on-exec
            } else {
                dup2(source, target);
            }
        }
        // A test may have changed these; the child starts from the defaults.
        signal(SIGPIPE, SIG_DFL);
        sigset_t none;
        sigemptyset(&none);
        sigprocmask(SIG_SETMASK, &none, nullptr);
        inChild();
        _exit(127);
    }
    close(in[0]);
    close(out[1]);
    if (pid < 0) {
        close(in[1]);
        close(out[0]);
        return false;
    }
    pid_ = pid;
    owner_ = getpid();
    input_ = in[1];
    output_ = out[0];
    frames_ = FrameReader();
    return true;
}

bool ChildProcess::Exec(const std::string& program, const std::vector<std::string>& environment,
                        const std::vector<std::string>& arguments, const Descriptors& descriptors) {
    // Built before the fork: the child only calls what is safe after it.
    std::vector<char*> argv{const_cast<char*>(program.c_str())};
    for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    std::vector<char*> envp;
    for (const std::string& entry : environment) envp.push_back(const_cast<char*>(entry.c_str()));
    envp.push_back(nullptr);
    return Spawn([&] { execve(program.c_str(), argv.data(), envp.data()); }, descriptors);
}

bool ChildProcess::Fork(const std::function<int()>& body) {
    return Spawn([&] { _exit(body()); }, {});
}

bool ChildProcess::WriteFrame(const std::string& payload) {
    unsigned char header[kFrameHeaderSize];
    EncodeFrameHeader(static_cast<std::uint32_t>(payload.size()), header);
    const std::string bytes = std::string(reinterpret_cast<const char*>(header), sizeof header) + payload;
    // A child that has ended must fail the write, not end the test with SIGPIPE.
    struct sigaction ignore {};
    struct sigaction saved {};
    ignore.sa_handler = SIG_IGN;
    sigaction(SIGPIPE, &ignore, &saved);
    std::size_t done = 0;
    while (input_ >= 0 && done < bytes.size()) {
        const ssize_t wrote = UnixPlatform::RetryingWrite(input_, bytes.data() + done, bytes.size() - done);
        if (wrote <= 0) break;
        done += static_cast<std::size_t>(wrote);
    }
    sigaction(SIGPIPE, &saved, nullptr);
    return done == bytes.size();
}

void ChildProcess::CloseInput() { CloseIfOpen(input_); }

std::optional<std::string> ChildProcess::ReadFrame(std::chrono::milliseconds timeout) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    std::string payload;
    // Exactly what the frame still wants is read, so nothing after it is taken.
    while (!frames_.TakeMessage(payload)) {
        char chunk[4096];
        const ssize_t got = Readable(output_, deadline)
                                ? UnixPlatform::RetryingRead(output_, chunk, std::min(sizeof chunk, frames_.Wanted()))
                                : 0;
        if (got <= 0) return std::nullopt;
        frames_.Feed(chunk, static_cast<std::size_t>(got));
    }
    return payload;
}

std::optional<int> ChildProcess::WaitForExit(std::chrono::milliseconds timeout) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (Running() && Owned()) {
        int status = 0;
        const pid_t done = waitpid(pid_, &status, WNOHANG);
        if (done == pid_) {
            pid_ = -1;
            return Outcome(status);
        }
        if (done < 0 && errno != EINTR) break;
        if (std::chrono::steady_clock::now() >= deadline) break;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return std::nullopt;
}

void ChildProcess::Stop(std::chrono::milliseconds grace) {
    if (!Running() || !Owned()) return;
    kill(pid_, SIGTERM);
    if (WaitForExit(grace)) return;
    kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
    pid_ = -1;
}

std::string InitializationDocument(const std::string& baseDirectory) {
    InitializationInfo info;
    info.baseDirectory = MakeFileLocation(baseDirectory);
    return std::string(ConvertToXML(info).View());
}

std::string ReadUntil(int fd, const std::string& end, std::chrono::milliseconds timeout) {
    std::string text;
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    char buffer[256];
    while (text.find(end) == std::string::npos && Readable(fd, deadline)) {
        const ssize_t got = UnixPlatform::RetryingRead(fd, buffer, sizeof buffer);
        if (got <= 0) break;
        text.append(buffer, static_cast<std::size_t>(got));
    }
    return text;
}
