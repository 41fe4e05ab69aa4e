#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

// A wake-up signal for one waiting thread. A ring is remembered until the
// waiter takes it, so a ring that comes before the wait is never lost.
// Its mutex is never held while any other lock is taken.
class Doorbell {
public:
    void Ring();
    // Blocks until rung, then clears the ring.
    void Wait();
    // As Wait, giving up after `timeout`; true if it was rung.
    bool WaitFor(std::chrono::milliseconds timeout);

private:
    std::mutex mutex_;
    std::condition_variable rang_;
    bool rung_ = false;
};
