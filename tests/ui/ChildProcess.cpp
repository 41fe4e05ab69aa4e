#include "tests/ui/ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <thread>

#include "base/files/FileLocation.h"
#include "protocol/Documents.h"
#include "protocol/InitializationInfo.h"

ChildProcess::~ChildProcess() {
    if (input_ >= 0) close(input_);
    if (output_ >= 0) close(output_);
    if (pid_ > 0) {
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
    }
}

bool ChildProcess::Spawn(const std::function<void()>& inChild) {
    int in[2];
    int out[2];
    if (pipe2(in, O_CLOEXEC) != 0) return false;
    if (pipe2(out, O_CLOEXEC) != 0) {
        close(in[0]);
        close(in[1]);
        return false;
    }
    pid_ = fork();
    if (pid_ == 0) {
        dup2(in[0], 0);
        dup2(out[1], 1);
        inChild();
        _exit(127);
    }
    close(in[0]);
    close(out[1]);
    input_ = in[1];
    output_ = out[0];
    return pid_ > 0;
}

bool ChildProcess::Exec(const std::string& program, const std::vector<std::string>& environment) {
    return Spawn([&] {
        std::vector<char*> envp;
        for (const std::string& entry : environment) envp.push_back(const_cast<char*>(entry.c_str()));
        envp.push_back(nullptr);
        char* argv[] = {const_cast<char*>(program.c_str()), nullptr};
        execve(program.c_str(), argv, envp.data());
    });
}

bool ChildProcess::Fork(const std::function<int()>& body) {
    return Spawn([&] { _exit(body()); });
}

bool ChildProcess::WriteFrame(const std::string& payload) {
    std::string frame;
    for (int shift = 0; shift < 32; shift += 8) frame.push_back(static_cast<char>((payload.size() >> shift) & 0xFF));
    frame += payload;
    for (std::size_t done = 0; done < frame.size();) {
        const ssize_t wrote = write(input_, frame.data() + done, frame.size() - done);
        if (wrote < 0 && errno == EINTR) continue;
        if (wrote <= 0) return false;
        done += static_cast<std::size_t>(wrote);
    }
    return true;
}

std::optional<std::string> ChildProcess::ReadFrame(std::chrono::milliseconds timeout) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    for (;;) {
        if (buffered_.size() >= 4) {
            std::size_t length = 0;
            for (int i = 0; i < 4; ++i) length |= std::size_t{static_cast<unsigned char>(buffered_[i])} << (8 * i);
            if (buffered_.size() >= 4 + length) {
                std::string payload = buffered_.substr(4, length);
                buffered_.erase(0, 4 + length);
                return payload;
            }
        }
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        if (left.count() <= 0) return std::nullopt;
        pollfd fd{output_, POLLIN, 0};
        const int ready = poll(&fd, 1, static_cast<int>(left.count()));
        if (ready < 0 && errno == EINTR) continue;
        if (ready <= 0) return std::nullopt;
        char chunk[4096];
        const ssize_t got = read(output_, chunk, sizeof chunk);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) return std::nullopt;
        buffered_.append(chunk, static_cast<std::size_t>(got));
    }
}

std::optional<int> ChildProcess::WaitForExit(std::chrono::milliseconds timeout) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (pid_ > 0) {
        int status = 0;
        if (waitpid(pid_, &status, WNOHANG) == pid_) {
            pid_ = -1;
            return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        }
        if (std::chrono::steady_clock::now() >= deadline) break;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return std::nullopt;
}

std::string InitializationDocument(const std::string& baseDirectory) {
    InitializationInfo info;
    info.baseDirectory = MakeFileLocation(baseDirectory);
    return std::string(ConvertToXML(info).View());
}
