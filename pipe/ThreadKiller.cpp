#include "pipe/ThreadKiller.h"

#include <algorithm>
#include <mutex>
#include <vector>

#include "pipe/Doorbell.h"

namespace {

// Made once and never destroyed: a pipe's threads may still register and
// ring while the process ends, after static destructors have run.
std::mutex& RegistryLock() {
    static std::mutex& lock = *new std::mutex;
    return lock;
}

std::vector<std::shared_ptr<Doorbell>>& Registry() {
    static auto& bells = *new std::vector<std::shared_ptr<Doorbell>>;
    return bells;
}

}  // namespace

ThreadKiller::KillFlag ThreadKiller::m_kill;

ThreadKiller::KillFlag& ThreadKiller::KillFlag::operator=(bool kill) {
    value_.store(kill, std::memory_order_release);
    if (!kill) return *this;
    // Ring copies, outside the registry lock: a doorbell's own mutex is never
    // taken while another lock is held.
    std::vector<std::shared_ptr<Doorbell>> bells;
    {
        std::lock_guard<std::mutex> lock(RegistryLock());
        bells = Registry();
    }
    for (const auto& bell : bells) bell->Ring();
    return *this;
}

void ThreadKiller::Register(const std::shared_ptr<Doorbell>& bell) {
    std::lock_guard<std::mutex> lock(RegistryLock());
    Registry().push_back(bell);
}

void ThreadKiller::Unregister(const std::shared_ptr<Doorbell>& bell) {
    std::lock_guard<std::mutex> lock(RegistryLock());
    auto& bells = Registry();
    bells.erase(std::remove(bells.begin(), bells.end(), bell), bells.end());
}
