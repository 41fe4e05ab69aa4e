#include "client/UIProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <thread>

#include "pipe/UnixIO.h"

namespace {

using UnixPlatform::RetryingRead;
using UnixPlatform::RetryingWrite;

void CloseFd(int& fd) {
    if (fd >= 0) close(fd);  // never retried: the descriptor is gone either way
    fd = -1;
}

// poll(2) counts in an int of milliseconds; a minute at a time keeps any
// target, time_point::max() included, far from its limit.
constexpr std::chrono::milliseconds kLongestPoll{60000};

int StatusOf(int status) {
    if (WIFEXITED(status)) return WEXITSTATUS(status);
    if (WIFSIGNALED(status)) return 128 + WTERMSIG(status);
    return -1;
}

std::string ErrnoText(int error) { return std::strerror(error); }

}  // namespace

void DieWithParent(pid_t parent) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) _exit(127);
}

int PollUntil(SteadyClock::time_point until, const PollOnce& poll, const WaitClock& now) {
    for (;;) {
        const SteadyClock::time_point current = now();
        const SteadyClock::duration left = current < until ? until - current : SteadyClock::duration::zero();
        // Rounded up: a poll of 0 for the last fraction of a millisecond
        // would spin until the target.
        const auto slice = std::min(std::chrono::ceil<std::chrono::milliseconds>(left), kLongestPoll);
        const int ready = poll(static_cast<int>(slice.count()));
        if (ready != 0 || now() >= until) return ready;
    }
}

UIProcess::~UIProcess() { Stop(std::chrono::milliseconds(0)); }

void UIProcess::Start(const std::string& program, const std::vector<std::string>& arguments,
                      const std::vector<std::string>& environment) {
    // Everything the child needs is made before the fork: after it, only
    // async-signal-safe calls.
    std::vector<char*> argv{const_cast<char*>(program.c_str())};
    for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    std::vector<char*> envp;
    for (const std::string& entry : environment) envp.push_back(const_cast<char*>(entry.c_str()));
    envp.push_back(nullptr);

    int in[2], out[2], failure[2];
    if (pipe2(in, O_CLOEXEC) != 0) throw ClientError{"cannot make a pipe: " + ErrnoText(errno)};
    if (pipe2(out, O_CLOEXEC) != 0) {
        close(in[0]);
        close(in[1]);
        throw ClientError{"cannot make a pipe: " + ErrnoText(errno)};
    }
    // Carries the child's errno when exec fails; closed by a successful exec.
    if (pipe2(failure, O_CLOEXEC) != 0) {
        for (int fd : {in[0], in[1], out[0], out[1]}) close(fd);
        throw ClientError{"cannot make a pipe: " + ErrnoText(errno)};
    }
    const pid_t parent = getpid();
    const pid_t pid = fork();
    if (pid == 0) {
        DieWithParent(parent);
        // With the client's own 0 or 1 closed, a pipe end may itself be 0 or
        // 1: lift both ends above 2 first, so neither dup2 below overwrites
        // the other (and dup2 onto the same number would keep close-on-exec).
        const int childIn = fcntl(in[0], F_DUPFD_CLOEXEC, 3);
        const int childOut = fcntl(out[1], F_DUPFD_CLOEXEC, 3);
        if (childIn < 0 || childOut < 0 || dup2(childIn, 0) < 0 || dup2(childOut, 1) < 0) {
            const int error = errno;
            RetryingWrite(failure[1], &error, sizeof error);
            _exit(127);
        }
        // The client ignores SIGPIPE and may block signals; the program
        // starts with the defaults.
        signal(SIGPIPE, SIG_DFL);
        sigset_t none;
        sigemptyset(&none);
        sigprocmask(SIG_SETMASK, &none, nullptr);
        execve(program.c_str(), argv.data(), envp.data());
        const int error = errno;
        RetryingWrite(failure[1], &error, sizeof error);
        _exit(127);
    }
    const int forkError = errno;
    close(in[0]);
    close(out[1]);
    close(failure[1]);
    if (pid < 0) {
        close(in[1]);
        close(out[0]);
        close(failure[0]);
        throw ClientError{"cannot start " + program + ": " + ErrnoText(forkError)};
    }
    pid_ = pid;
    input_ = in[1];
    output_ = out[0];
    int error = 0;
    const ssize_t got = RetryingRead(failure[0], &error, sizeof error);
    close(failure[0]);
    if (got == static_cast<ssize_t>(sizeof error)) {
        Stop(std::chrono::milliseconds(0));
        throw ClientError{"cannot run " + program + ": " + ErrnoText(error)};
    }
}

void UIProcess::Send(const std::string& payload) {
    if (input_ < 0) throw ClientError{"the pipe to the program is already closed"};
    if (payload.size() > kMaxFramePayload) {
        throw ClientError{"a document of " + std::to_string(payload.size()) + " bytes is more than a frame carries (" +
                          std::to_string(kMaxFramePayload) + ")"};
    }
    unsigned char header[kFrameHeaderSize];
    EncodeFrameHeader(static_cast<std::uint32_t>(payload.size()), header);
    std::string frame(reinterpret_cast<const char*>(header), kFrameHeaderSize);
    frame += payload;
    for (std::size_t done = 0; done < frame.size();) {
        const ssize_t wrote = RetryingWrite(input_, frame.data() + done, frame.size() - done);
        if (wrote <= 0) {
            // SIGPIPE is ignored, so a program that died shows up here.
            throw ClientError{"the program no longer reads its input (" +
                              ErrnoText(wrote < 0 ? errno : EPIPE) + "); it has probably ended"};
        }
        done += static_cast<std::size_t>(wrote);
    }
}

void UIProcess::CloseInput() { CloseFd(input_); }

UIProcess::Event UIProcess::Next(std::string& payload, SteadyClock::time_point until, const std::vector<int>& watched,
                                 std::size_t* which) {
    for (;;) {
        try {
            // Whatever is buffered goes to the frame reader first.
            while (!buffer_.empty() && !frames_.HasMessage()) {
                buffer_.erase(0, frames_.Feed(buffer_.data(), buffer_.size()));
            }
            if (frames_.TakeMessage(payload)) {
                if (payload.empty()) continue;  // an empty frame carries nothing
                return Event::Frame;
            }
            if (outputEnded_) {
                frames_.EndOfStream();
                return Event::Ended;
            }
        } catch (const UnixPipeReadMessageError&) {
            throw ClientError{outputEnded_ ? "the program's output ended inside a frame"
                                           : "the program sent a malformed frame (a length above " +
                                                 std::to_string(kMaxFramePayload) + " bytes)"};
        }
        std::vector<pollfd> fds{{output_, POLLIN, 0}};
        for (const int fd : watched) fds.push_back({fd, POLLIN, 0});
        const int ready =
            PollUntil(until, [&fds](int milliseconds) { return poll(fds.data(), fds.size(), milliseconds); });
        if (ready < 0 && errno != EINTR) throw ClientError{"cannot wait for the program: " + ErrnoText(errno)};
        // Interrupted: a signal handler may have written to a watched
        // descriptor, so look again at once.
        if (ready < 0) continue;
        for (std::size_t i = 1; i < fds.size(); ++i) {
            if ((fds[i].revents & (POLLIN | POLLHUP | POLLERR | POLLNVAL)) != 0) {
                if (which != nullptr) *which = i - 1;
                return Event::Watched;
            }
        }
        if (ready == 0) return Event::Timeout;
        char chunk[65536];
        const ssize_t got = RetryingRead(output_, chunk, sizeof chunk);
        if (got <= 0) {
            outputEnded_ = true;
        } else {
            buffer_.append(chunk, static_cast<std::size_t>(got));
        }
    }
}

std::optional<int> UIProcess::WaitForExit(SteadyClock::time_point until) {
    for (;;) {
        if (pid_ <= 0) return std::nullopt;
        int status = 0;
        const pid_t done = waitpid(pid_, &status, WNOHANG);
        if (done == pid_) {
            pid_ = -1;
            CloseFd(input_);
            CloseFd(output_);
            return StatusOf(status);
        }
        if (done < 0 && errno != EINTR) {
            pid_ = -1;
            return std::nullopt;
        }
        if (SteadyClock::now() >= until) return std::nullopt;
        // No event tells a parent that a child ended without taking over
        // SIGCHLD for the whole process; a short poll keeps this local.
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
}

void UIProcess::Stop(std::chrono::milliseconds grace) {
    CloseFd(input_);
    if (pid_ > 0) {
        if (grace.count() > 0) {
            kill(pid_, SIGTERM);
            WaitForExit(SteadyClock::now() + grace);
        }
        if (pid_ > 0) {
            kill(pid_, SIGKILL);
            while (waitpid(pid_, nullptr, 0) < 0 && errno == EINTR) {
            }
            pid_ = -1;
        }
    }
    CloseFd(output_);
}
