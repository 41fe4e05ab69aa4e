#include "pipe/Doorbell.h"

void Doorbell::Ring() {
    {
        std::lock_guard<std::mutex> lock(mutex_);
        rung_ = true;
    }
    rang_.notify_all();
}

void Doorbell::Wait() {
    std::unique_lock<std::mutex> lock(mutex_);
    rang_.wait(lock, [this] { return rung_; });
    rung_ = false;
}

bool Doorbell::WaitFor(std::chrono::milliseconds timeout) {
    std::unique_lock<std::mutex> lock(mutex_);
    if (!rang_.wait_for(lock, timeout, [this] { return rung_; })) return false;
    rung_ = false;
    return true;
}
