#pragma once

#include <pthread.h>

#include "base/Exceptions.h"

// The mutex could not be set up (out of resources at start-up).
class AccessLockInitError : public DebuggableException {};

// A recursive mutex: the thread that holds it may take it again, so a queue
// operation can call another one without deadlocking on itself.
class AccessLock {
public:
    AccessLock();
    ~AccessLock();
    AccessLock(const AccessLock&) = delete;
    AccessLock& operator=(const AccessLock&) = delete;

    void Lock();
    void Unlock();

private:
    pthread_mutex_t mutex_;
};

// Holds an AccessLock for the lifetime of a scope.
class AccessLocker {
public:
    explicit AccessLocker(AccessLock& lock) : lock_(lock) { lock_.Lock(); }
    ~AccessLocker() { lock_.Unlock(); }
    AccessLocker(const AccessLocker&) = delete;
    AccessLocker& operator=(const AccessLocker&) = delete;

private:
    AccessLock& lock_;
};
