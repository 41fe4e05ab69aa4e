#pragma once

#include <memory>
#include <utility>

#include "pipe/AccessLock.h"
#include "pipe/Doorbell.h"
#include "pipe/FiFoQueue.h"

// A FiFoQueue shared between threads, guarded by its own AccessLock. The
// consumer takes everything at once, so neither side holds the lock for
// longer than one append or one splice.
//
// A consumer that would rather sleep than poll attaches a Doorbell; every
// append rings it after the lock has been let go, so the ring never happens
// under two locks.
template <class T>
class LockedQueue {
public:
    void WriteMessage(T item) {
        std::shared_ptr<Doorbell> bell;
        {
            AccessLocker locker(lock_);
            items_.Append(std::move(item));
            bell = doorbell_;
        }
        if (bell) bell->Ring();
    }

    // Hands over everything queued so far, oldest first, behind whatever `out`
    // already holds (for the usual empty `out` this is a plain swap).
    void ReadMessages(FiFoQueue<T>& out) {
        AccessLocker locker(lock_);
        out.Splice(items_);
    }

    bool IsEmpty() {
        AccessLocker locker(lock_);
        return items_.IsEmpty();
    }

    void SetDoorbell(std::shared_ptr<Doorbell> bell) {
        AccessLocker locker(lock_);
        doorbell_ = std::move(bell);
    }

    // Detaches `bell` if it is still the attached one; a newer consumer's
    // bell stays.
    void DetachDoorbell(const std::shared_ptr<Doorbell>& bell) {
        AccessLocker locker(lock_);
        if (doorbell_ == bell) doorbell_.reset();
    }

private:
    AccessLock lock_;
    FiFoQueue<T> items_;
    std::shared_ptr<Doorbell> doorbell_;
};
