#include "pipe/PortableThread.h"

#include <pthread.h>

#include <cstdio>

#include "pipe/Sleep.h"

std::atomic<int> PortableThread::liveCount_{0};

PortableThread::PortableThread(EntryFunction entry, void* argument, bool autoDelete)
    : entry_(entry), argument_(argument), autoDelete_(autoDelete) {
    liveCount_.fetch_add(1);
}

PortableThread::~PortableThread() {
    liveCount_.fetch_sub(1);
}

PortableThread* CreatePortableThreadSuspended(PortableThread::EntryFunction entry, void* argument) {
    return new PortableThread(entry, argument, false);
}

void DeleteUnstartedThread(PortableThread* thread) {
    delete thread;
}

bool CreatePortableThread(PortableThread::EntryFunction entry, void* argument) {
    auto* thread = new PortableThread(entry, argument, true);
    if (thread->Start()) return true;
    delete thread;
    return false;
}

bool RunPortableThread(PortableThread::EntryFunction entry, void* argument) {
    return CreatePortableThread(entry, argument);
}

void DoThreadExitRoutines() {}

bool PortableThread::Start() {
    if (!suspended_) return true;

    pthread_attr_t attributes;
    int error = pthread_attr_init(&attributes);
    if (error != 0) {
        std::fprintf(stderr, "Unable to pthread_attr_init (%d)\n", error);
        return false;
    }
    struct AttributesOwner {
        pthread_attr_t* attributes;
        ~AttributesOwner() { pthread_attr_destroy(attributes); }
    } owner{&attributes};

    // Nobody joins: the owner abandons the object instead.
    error = pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
    if (error != 0) {
        std::fprintf(stderr, "Unable to pthread_attr_setdetachstate (%d)\n", error);
        return false;
    }
    std::size_t stackSize = 0;
    error = pthread_attr_getstacksize(&attributes, &stackSize);
    if (error != 0) {
        std::fprintf(stderr, "Unable to pthread_attr_getstacksize (%d)\n", error);
        return false;
    }
    // Some platforms default to far less than the XML and text code needs;
    // a larger default is left alone.
    if (stackSize < kMinimumThreadStack) {
        error = pthread_attr_setstacksize(&attributes, kMinimumThreadStack);
        if (error != 0) {
            std::fprintf(stderr, "Unable to pthread_attr_setstacksize (%d)\n", error);
            return false;
        }
    }
    // Marked started before the thread exists: an auto-deleting thread may
    // have run and freed this object by the time pthread_create returns.
    suspended_ = false;
    pthread_t handle;
    error = pthread_create(&handle, &attributes, &PortableThread::ThreadMain, this);
    if (error != 0) {
        suspended_ = true;
        std::fprintf(stderr, "Unable to pthread_create (%d)\n", error);
        return false;
    }
    return true;
}

void* PortableThread::ThreadMain(void* self) {
    static_cast<PortableThread*>(self)->Run();
    DoThreadExitRoutines();
    return nullptr;
}

void PortableThread::Run() {
    try {
        entry_(argument_);
    } catch (...) {
        // A thread has no one to report to; its function is expected to have
        // recorded the failure (a pipe kills itself) before anything escapes.
    }
    if (!autoDelete_) {
        Complete();
        // The owner may still look at the object until it lets go.
        while (!Abandoned()) MilliSecondSleep(1);
    }
    delete this;
}
