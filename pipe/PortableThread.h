#pragma once

#include <atomic>
#include <cstddef>

// Threads get at least this much stack; a larger default is kept.
constexpr std::size_t kMinimumThreadStack = 524288;

// A detached POSIX thread running `entry(argument)`.
//
// Two forms. An auto-deleting thread frees its object when the function
// returns. An owned thread (created suspended) is never joined: when its
// function returns it marks itself completed and waits until the owner calls
// Abandon(), which hands the object over to the thread; the thread then frees
// it. Exceptions escaping the function are swallowed in both forms.
class PortableThread {
public:
    using EntryFunction = void (*)(void*);

    PortableThread(const PortableThread&) = delete;
    PortableThread& operator=(const PortableThread&) = delete;

    // Creates the thread the first time; later calls do nothing and return
    // true. On failure one line goes to standard error and false comes back
    // (the caller still owns the object).
    bool Start();

    void Abandon() noexcept { abandoned_.store(true, std::memory_order_release); }
    void Complete() noexcept { completed_.store(true, std::memory_order_release); }
    bool Abandoned() const noexcept { return abandoned_.load(std::memory_order_acquire); }
    bool Completed() const noexcept { return completed_.load(std::memory_order_acquire); }

    // Thread objects alive in the process, started or not: a leak check for tests.
    static int LiveCount() noexcept { return liveCount_.load(); }

private:
    friend PortableThread* CreatePortableThreadSuspended(EntryFunction, void*);
    friend bool CreatePortableThread(EntryFunction, void*);
    friend void DeleteUnstartedThread(PortableThread*);

    PortableThread(EntryFunction entry, void* argument, bool autoDelete);
    ~PortableThread();

    static void* ThreadMain(void* self);
    void Run();

    std::atomic<bool> abandoned_{false};
    std::atomic<bool> completed_{false};
    EntryFunction entry_;
    void* argument_;
    bool suspended_ = true;  // touched only by the starting thread
    bool autoDelete_;

    static std::atomic<int> liveCount_;
};

// An owned thread, not yet started. If Start() fails, delete it with
// DeleteUnstartedThread.
PortableThread* CreatePortableThreadSuspended(PortableThread::EntryFunction entry, void* argument);
void DeleteUnstartedThread(PortableThread* thread);

// An auto-deleting thread, started at once; false (object freed) if it could
// not be started. RunPortableThread is the same call under its other name.
bool CreatePortableThread(PortableThread::EntryFunction entry, void* argument);
bool RunPortableThread(PortableThread::EntryFunction entry, void* argument);

// Runs the routines registered for the ending thread. Nothing in this program
// registers any, so there is nothing to run; the call marks where they belong.
void DoThreadExitRoutines();
