#include "pipe/AccessLock.h"

AccessLock::AccessLock() {
    pthread_mutexattr_t attributes;
    if (pthread_mutexattr_init(&attributes) != 0) throw AccessLockInitError();
    const bool ready = pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE) == 0 &&
                       pthread_mutex_init(&mutex_, &attributes) == 0;
    pthread_mutexattr_destroy(&attributes);
    if (!ready) throw AccessLockInitError();
}

AccessLock::~AccessLock() {
    pthread_mutex_destroy(&mutex_);
}

// Locking a valid, initialised recursive mutex only fails on counter overflow
// or misuse; neither is recoverable, so the results are not inspected.
void AccessLock::Lock() {
    pthread_mutex_lock(&mutex_);
}

void AccessLock::Unlock() {
    pthread_mutex_unlock(&mutex_);
}
