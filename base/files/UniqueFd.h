#pragma once

// Owner of one open file descriptor.

#include <utility>

namespace UnixPlatform {

class UniqueFd {
public:
    UniqueFd() noexcept = default;
    explicit UniqueFd(int fd) noexcept : fd_(fd) {}
    UniqueFd(UniqueFd&& other) noexcept : fd_(other.Release()) {}
    UniqueFd& operator=(UniqueFd&& other) noexcept {
        if (this != &other) Reset(other.Release());
        return *this;
    }
    UniqueFd(const UniqueFd&) = delete;
    UniqueFd& operator=(const UniqueFd&) = delete;
    ~UniqueFd() { Reset(); }

    int Get() const noexcept { return fd_; }
    bool Valid() const noexcept { return fd_ >= 0; }
    int Release() noexcept { return std::exchange(fd_, -1); }
    // Closes the descriptor held, ignoring the result. close is never retried:
    // on Linux the descriptor is gone even when it reports EINTR, and a retry
    // could close one that another thread has just opened.
    void Reset(int fd = -1) noexcept;
    // Closes and reports close's errno (0 on success), for writers that must
    // know whether the data reached the file.
    int Close() noexcept;

private:
    int fd_ = -1;
};

}  // namespace UnixPlatform
