#pragma once

#include <atomic>
#include <memory>

class Doorbell;

// The process-wide request that every service loop stop at its next check.
// Loops that sleep on a Doorbell register it, so setting the flag wakes them
// instead of leaving them asleep until their next message.
class ThreadKiller {
public:
    class KillFlag {
    public:
        // Setting the flag rings every registered doorbell; clearing it rings none.
        KillFlag& operator=(bool kill);
        operator bool() const noexcept { return value_.load(std::memory_order_acquire); }

    private:
        std::atomic<bool> value_{false};
    };

    static KillFlag m_kill;

    static void Register(const std::shared_ptr<Doorbell>& bell);
    static void Unregister(const std::shared_ptr<Doorbell>& bell);
};
