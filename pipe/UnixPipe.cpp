#include "pipe/UnixPipe.h"

#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <utility>

#include "pipe/Doorbell.h"
#include "pipe/PortableThread.h"
#include "pipe/Sleep.h"
#include "pipe/ThreadKiller.h"
#include "pipe/UnixIO.h"

UnixPipe::UnixPipe(UIMessageQueue& incoming, UIMessageQueue& outgoing)
    : incoming_(incoming), outgoing_(outgoing), wakeWriter_(std::make_shared<Doorbell>()) {
    outgoing_.SetDoorbell(wakeWriter_);
    ThreadKiller::Register(wakeWriter_);
}

UnixPipe::~UnixPipe() {
    ThreadKiller::Unregister(wakeWriter_);
    outgoing_.DetachDoorbell(wakeWriter_);
    if (writeFd_ != 0) close(writeFd_);
    if (readFd_ != 0) close(readFd_);
}

bool UnixPipe::Start(int readFd, int writeFd) {
    {
        AccessLocker locker(stateLock_);
        readFd_ = readFd;
        writeFd_ = writeFd;
    }
    if (!StartThread(&UnixPipe::readerThread_, &UnixPipe::ServiceReadLoop)) return false;
    return StartThread(&UnixPipe::writerThread_, &UnixPipe::ServiceWriteLoop);
}

bool UnixPipe::StartThread(PortableThread* UnixPipe::*slot, void (*loop)(void*)) {
    AddReference();
    bool started;
    {
        // Held across the start, so the new thread's first look at its slot
        // finds it filled.
        AccessLocker locker(stateLock_);
        PortableThread* thread = CreatePortableThreadSuspended(loop, this);
        started = thread->Start();
        if (!started) {
            DeleteUnstartedThread(thread);
        } else if (killed_) {
            // Kill has already let go of the threads; this one would otherwise
            // wait for an Abandon that never comes.
            thread->Abandon();
        } else {
            this->*slot = thread;
        }
    }
    if (!started) ReleaseThreadReference();
    return started;
}

void UnixPipe::Kill() {
    {
        AccessLocker locker(stateLock_);
        if (killed_) return;
        if (writeFd_ != 0) {
            // Closing under a write in progress could let the number be reused
            // and the rest of the frame land in someone else's file; the writer
            // closes it as soon as its write returns.
            if (writing_) {
                closeAfterWrite_ = true;
            } else {
                close(writeFd_);
                writeFd_ = 0;
            }
        }
        if (writerThread_ != nullptr) writerThread_->Abandon();
        writerThread_ = nullptr;
        if (readerThread_ != nullptr) readerThread_->Abandon();
        readerThread_ = nullptr;
        killed_ = true;
    }
    wakeWriter_->Ring();
}

bool UnixPipe::Killed() {
    AccessLocker locker(stateLock_);
    return killed_;
}

std::uint32_t UnixPipe::AddReference() {
    AccessLocker locker(refLock_);
    return ++refCount_;
}

std::uint32_t UnixPipe::RemoveReference() {
    AccessLocker locker(refLock_);
    if (refCount_ > 0) --refCount_;
    return refCount_;
}

std::uint32_t UnixPipe::GetRefCount() {
    AccessLocker locker(refLock_);
    return refCount_;
}

void UnixPipe::ReleaseThreadReference() {
    if (RemoveReference() == 0) delete this;
}

void UnixPipe::Sleep(unsigned long ms) {
    MilliSecondSleep(ms);
}

void UnixPipe::ReadMessageFromPipe(UIMessage& message) {
    int fd;
    {
        AccessLocker locker(stateLock_);
        fd = readFd_;
    }
    // Reads only what the current frame still lacks, so whatever follows a
    // frame, or a rejected header, stays in the descriptor. A small chunk:
    // the thread's stack pages stay resident for the whole session, and with
    // 1 KiB the thread needs one page fewer than with 4 KiB (a 2 MiB frame
    // is still read in a few milliseconds).
    char chunk[1024];
    std::string payload;
    while (!frames_.TakeMessage(payload)) {
        // After an error the frame reader stays dead, and so does this call.
        if (frames_.GetState() == FrameReader::State::Killed) throw UnixPipeReadMessageError();
        const std::size_t wanted = std::min(frames_.Wanted(), sizeof chunk);
        const ssize_t got = UnixPlatform::RetryingRead(fd, chunk, wanted);
        if (got <= 0) {
            // An error other than an interruption counts as end of file.
            frames_.EndOfStream();
            throw UnixPipeReadMessageError();
        }
        for (std::size_t used = 0; used < static_cast<std::size_t>(got);)
            used += frames_.Feed(chunk + used, static_cast<std::size_t>(got) - used);
    }
    message.tag = 0;
    message.text = AutoUString<UTF8>(std::move(payload));
}

void UnixPipe::WriteMessageToPipe(const UIMessage& message) {
    const std::size_t size = message.text.Size();
    if (size == 0) return;  // an empty message is never written
    if (size > UINT32_MAX) throw UnixPipeWriteMessageError();
    int fd;
    {
        AccessLocker locker(stateLock_);
        if (killed_ || writeFd_ == 0) throw UnixPipeWriteMessageError();
        fd = writeFd_;
        writing_ = true;
    }
    unsigned char header[kFrameHeaderSize];
    EncodeFrameHeader(static_cast<std::uint32_t>(size), header);
    // One write each; a partial write is not resumed and ends the pipe.
    const bool whole = UnixPlatform::RetryingWrite(fd, header, sizeof header) == static_cast<ssize_t>(sizeof header) &&
                       UnixPlatform::RetryingWrite(fd, message.text.Data(), size) == static_cast<ssize_t>(size);
    EndWrite();
    if (!whole) throw UnixPipeWriteMessageError();
}

void UnixPipe::EndWrite() {
    AccessLocker locker(stateLock_);
    writing_ = false;
    if (closeAfterWrite_) {
        closeAfterWrite_ = false;
        close(writeFd_);
        writeFd_ = 0;
    }
}

bool UnixPipe::ShouldStop(PortableThread* UnixPipe::*thread) {
    if (ThreadKiller::m_kill) return true;
    AccessLocker locker(stateLock_);
    return killed_ || this->*thread == nullptr;
}

void UnixPipe::ServiceReadLoop(void* self) {
    auto* pipe = static_cast<UnixPipe*>(self);
    pipe->ReadLoop();
    pipe->ReleaseThreadReference();
}

void UnixPipe::ServiceWriteLoop(void* self) {
    auto* pipe = static_cast<UnixPipe*>(self);
    pipe->WriteLoop();
    pipe->ReleaseThreadReference();
}

void UnixPipe::ReadLoop() {
    while (!ShouldStop(&UnixPipe::readerThread_)) {
        try {
            UIMessage message;
            ReadMessageFromPipe(message);
            incoming_.WriteMessage(std::move(message));
        } catch (...) {
            break;
        }
    }
    Kill();
}

void UnixPipe::WriteLoop() {
    FiFoQueue<UIMessage> batch;
    while (!ShouldStop(&UnixPipe::writerThread_)) {
        try {
            outgoing_.ReadMessages(batch);
            if (batch.IsEmpty()) {
                // Idle until a message is queued, the pipe is killed or every
                // thread is told to stop: no periodic wake-ups.
                wakeWriter_->Wait();
                continue;
            }
            while (!batch.IsEmpty()) {
                const UIMessage message = batch.TakeFront();
                // An empty message asks for the pipe to be closed; what was
                // queued behind it is dropped.
                if (message.text.Empty()) {
                    Kill();
                    return;
                }
                WriteMessageToPipe(message);
            }
        } catch (...) {
            break;
        }
    }
    Kill();
}
