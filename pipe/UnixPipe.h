#pragma once

#include <cstdint>
#include <memory>

#include "base/Exceptions.h"
#include "pipe/AccessLock.h"
#include "pipe/FrameReader.h"
#include "pipe/UIMessage.h"

class Doorbell;
class PortableThread;

// An output frame could not be written whole.
class UnixPipeWriteMessageError : public DebuggableException {};

// The message link to the client over two descriptors: a reader thread cuts
// frames from one into `incoming`, a writer thread sends what `outgoing`
// holds through the other.
//
// The object is reference-counted across the threads that use it (the owner,
// the reader, the writer); whoever drops the last reference deletes it.
// Once killed it stays killed: the write descriptor is closed, so the client
// reads end of file, and both threads leave their loops. Descriptor value 0
// means "none", so descriptor 0 is never closed here.
class UnixPipe {
public:
    UnixPipe(UIMessageQueue& incoming, UIMessageQueue& outgoing);
    ~UnixPipe();
    UnixPipe(const UnixPipe&) = delete;
    UnixPipe& operator=(const UnixPipe&) = delete;

    // Starts the reader on `readFd`, then the writer on `writeFd`, each with
    // its own reference. False if either could not be started (a reader that
    // runs keeps running). May delete the pipe if the caller holds no reference.
    bool Start(int readFd, int writeFd);

    void Kill();
    bool Killed();

    std::uint32_t AddReference();
    // Never goes below 0. Whoever receives 0 deletes the pipe.
    std::uint32_t RemoveReference();
    std::uint32_t GetRefCount();

    static void Sleep(unsigned long ms);

    // One frame in (blocking until it is whole) or out.
    void ReadMessageFromPipe(UIMessage& message);
    void WriteMessageToPipe(const UIMessage& message);

private:
    static void ServiceReadLoop(void* self);
    static void ServiceWriteLoop(void* self);
    void ReadLoop();
    void WriteLoop();
    bool ShouldStop(PortableThread* UnixPipe::*thread);
    bool StartThread(PortableThread* UnixPipe::*slot, void (*loop)(void*));
    void ReleaseThreadReference();
    void EndWrite();

    // Guarded by stateLock_.
    bool killed_ = false;
    PortableThread* readerThread_ = nullptr;
    PortableThread* writerThread_ = nullptr;
    int readFd_ = 0;
    int writeFd_ = 0;
    bool writing_ = false;           // the writer is inside write() on writeFd_
    bool closeAfterWrite_ = false;   // Kill came while it was

    UIMessageQueue& incoming_;
    UIMessageQueue& outgoing_;
    AccessLock stateLock_;

    std::uint32_t refCount_ = 0;
    AccessLock refLock_;

    // Wakes the idle writer: rung by outgoing_, by Kill and by ThreadKiller.
    std::shared_ptr<Doorbell> wakeWriter_;
    FrameReader frames_;  // reader thread only
};
