#include <gtest/gtest.h>

#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "base/files/UniqueFd.h"
#include "pipe/Doorbell.h"
#include "pipe/FiFoQueue.h"
#include "pipe/FrameReader.h"
#include "pipe/PortableThread.h"
#include "pipe/ThreadKiller.h"
#include "pipe/UIMessage.h"
#include "pipe/UnixIO.h"
#include "pipe/UnixPipe.h"

namespace {

std::string Header(std::uint32_t length) {
    unsigned char bytes[kFrameHeaderSize];
    EncodeFrameHeader(length, bytes);
    return std::string(reinterpret_cast<const char*>(bytes), sizeof bytes);
}

UIMessage Message(const std::string& text) {
    UIMessage message;
    message.text = AutoUString<UTF8>(text);
    return message;
}

std::string Frame(const std::string& payload) {
    return Header(static_cast<std::uint32_t>(payload.size())) + payload;
}

// Polls `done` every millisecond for up to ten seconds, for states that give
// no event to block on (a reference count, a detached thread's exit). The
// bound only keeps a broken build from hanging.
template <class Predicate>
bool WaitUntil(Predicate done) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!done()) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

// Feeds `stream` in pieces of at most `piece` bytes; returns the payloads.
std::vector<std::string> FeedInPieces(FrameReader& reader, const std::string& stream, std::size_t piece) {
    std::vector<std::string> messages;
    std::string message;
    for (std::size_t at = 0; at < stream.size();) {
        const std::size_t end = std::min(at + piece, stream.size());
        while (at < end) {
            at += reader.Feed(stream.data() + at, end - at);
            if (reader.TakeMessage(message)) messages.push_back(message);
        }
    }
    return messages;
}

TEST(FrameReader, StreamSplitAnywhereGivesSameMessages) {
    const std::vector<std::string> expected = {"<a/>", "", std::string(300, 'x'), "\xC3\xA9"};
    std::string stream;
    for (const auto& payload : expected) stream += Frame(payload);
    for (std::size_t piece = 1; piece <= stream.size(); ++piece) {
        SCOPED_TRACE(piece);
        FrameReader reader;
        EXPECT_EQ(FeedInPieces(reader, stream, piece), expected);
        EXPECT_NO_THROW(reader.EndOfStream());
    }
}

// Raw header bytes pin the byte order, which Header() would only mirror.
TEST(FrameReader, LengthIsLittleEndianCappedAndErrorsAreFinal) {
    FrameReader cut;
    EXPECT_EQ(cut.Feed("\x00\x01\x00\x00" "ab", 6), 4u);
    EXPECT_EQ(cut.Wanted(), 256u);
    EXPECT_EQ(cut.Feed("ab", 2), 2u);
    EXPECT_THROW(cut.EndOfStream(), UnixPipeReadMessageError);  // inside the payload
    EXPECT_THROW(cut.Feed("x", 1), UnixPipeReadMessageError);

    FrameReader overlong;
    EXPECT_THROW(overlong.Feed("\x01\x00\x20\x00", 4), UnixPipeReadMessageError);  // 2,097,153
    EXPECT_EQ(overlong.GetState(), FrameReader::State::Killed);
    EXPECT_THROW(overlong.Feed("\x00\x00\x00\x00", 4), UnixPipeReadMessageError);
}

using namespace std::chrono_literals;

TEST(FiFoQueue, EmptyThrowsAndSpliceKeepsOrder) {
    FiFoQueue<int> a, b;
    EXPECT_THROW(a.Front(), FiFoQueueIsEmpty);
    a.Append(1);
    b.Append(2);
    a.Splice(b);
    b.Append(3);  // b's tail must not point into a any more
    a.Append(5);  // a's tail is now b's last element
    EXPECT_EQ(a.TakeFront(), 1);
    EXPECT_EQ(a.TakeFront(), 2);
    EXPECT_EQ(a.TakeFront(), 5);
    EXPECT_THROW(a.TakeFront(), FiFoQueueIsEmpty);
    a.Append(4);  // the tail went with the last element
    EXPECT_EQ(a.Front(), 4);
    EXPECT_EQ(b.Front(), 3);
}

TEST(UIMessageQueue, AttachedDoorbellRingsOnEachMessage) {
    UIMessageQueue queue;
    auto bell = std::make_shared<Doorbell>();
    queue.SetDoorbell(bell);
    queue.WriteMessage(Message("x"));
    EXPECT_TRUE(bell->WaitFor(0ms));
    EXPECT_FALSE(bell->WaitFor(0ms));  // one ring, one wake-up
    queue.DetachDoorbell(std::make_shared<Doorbell>());  // not the attached one: no effect
    queue.WriteMessage(Message("y"));
    EXPECT_TRUE(bell->WaitFor(0ms));
    queue.DetachDoorbell(bell);
    queue.WriteMessage(Message("z"));
    EXPECT_FALSE(bell->WaitFor(0ms));
}

std::atomic<int> runs{0};
std::atomic<std::size_t> stackSeen{0};

void CountRunThenThrow(void*) {
    ++runs;
    throw std::runtime_error("escapes the thread function");
}

void RecordStack(void*) {
    pthread_attr_t attributes;
    std::size_t size = 0;
    if (pthread_getattr_np(pthread_self(), &attributes) == 0) {
        pthread_attr_getstacksize(&attributes, &size);
        pthread_attr_destroy(&attributes);
    }
    stackSeen = size;
}

bool AllThreadObjectsFreed() {
    return WaitUntil([] { return PortableThread::LiveCount() == 0; });
}

TEST(PortableThread, OwnedThreadRunsOnceAndWaitsForAbandon) {
    PortableThread* thread = CreatePortableThreadSuspended(&CountRunThenThrow, nullptr);
    ASSERT_TRUE(thread->Start());
    EXPECT_TRUE(thread->Start());
    ASSERT_TRUE(WaitUntil([&] { return thread->Completed(); }));
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(PortableThread::LiveCount(), 1);  // still the owner's to look at
    thread->Abandon();                          // now the thread frees it
    EXPECT_TRUE(AllThreadObjectsFreed());
}

TEST(PortableThread, StackIsRaisedToMinimumButNeverLowered) {
    pthread_attr_t saved;
    ASSERT_EQ(pthread_getattr_default_np(&saved), 0);
    const std::size_t processDefaults[] = {256 * 1024, 2 * 1024 * 1024};
    for (std::size_t processDefault : processDefaults) {
        SCOPED_TRACE(processDefault);
        pthread_attr_t defaults;
        pthread_attr_init(&defaults);
        pthread_attr_setstacksize(&defaults, processDefault);
        ASSERT_EQ(pthread_setattr_default_np(&defaults), 0);
        pthread_attr_destroy(&defaults);
        stackSeen = 0;
        ASSERT_TRUE(CreatePortableThread(&RecordStack, nullptr));
        ASSERT_TRUE(WaitUntil([] { return stackSeen != 0; }));
        EXPECT_GE(stackSeen.load(), std::max(processDefault, kMinimumThreadStack));
    }
    pthread_setattr_default_np(&saved);
    pthread_attr_destroy(&saved);
    EXPECT_TRUE(AllThreadObjectsFreed());
}

using UnixPlatform::UniqueFd;

// One direction of traffic, kept above 0-2: 0 means "none" to the pipe.
struct Channel {
    UniqueFd read, write;
    Channel() {
        int fds[2];
        if (pipe(fds) != 0) throw std::runtime_error("pipe");
        read.Reset(fcntl(fds[0], F_DUPFD_CLOEXEC, 3));
        write.Reset(fcntl(fds[1], F_DUPFD_CLOEXEC, 3));
        close(fds[0]);
        close(fds[1]);
    }
};

// One write: a blocking pipe takes it whole.
void WriteAll(int fd, const std::string& bytes) { UnixPlatform::RetryingWrite(fd, bytes.data(), bytes.size()); }

// For more than a pipe buffer holds: gives up when the reader has taken
// nothing for ten seconds (a reader that died holds its end open), so a
// rejected frame fails the test instead of blocking the writer for good.
bool WriteWithin(int fd, const std::string& bytes) {
    fcntl(fd, F_SETFL, fcntl(fd, F_GETFL) | O_NONBLOCK);
    for (std::size_t at = 0; at < bytes.size();) {
        pollfd ready{fd, POLLOUT, 0};
        if (poll(&ready, 1, 10000) != 1) return false;
        const ssize_t put = write(fd, bytes.data() + at, bytes.size() - at);
        if (put < 0 && errno != EAGAIN && errno != EINTR) return false;
        if (put > 0) at += static_cast<std::size_t>(put);
    }
    return true;
}

// Exactly `size` bytes; false at end of file or after ten silent seconds.
bool ReadExactly(int fd, std::size_t size, std::string& out) {
    out.assign(size, '\0');
    for (std::size_t at = 0; at < size;) {
        pollfd ready{fd, POLLIN, 0};
        const ssize_t got = poll(&ready, 1, 10000) == 1 ? UnixPlatform::RetryingRead(fd, &out[at], size - at) : 0;
        if (got <= 0) return false;
        at += static_cast<std::size_t>(got);
    }
    return true;
}

bool ReadFrame(int fd, std::string& payload) {
    std::string header;
    FrameReader frames;
    return ReadExactly(fd, 4, header) && frames.Feed(header.data(), 4) == 4 &&
           ReadExactly(fd, frames.Wanted(), payload);
}

bool SeesEndOfFile(int fd) {
    pollfd ready{fd, POLLIN, 0};
    char byte;
    return poll(&ready, 1, 10000) == 1 && UnixPlatform::RetryingRead(fd, &byte, 1) == 0;
}

// Every other thread is blocked (the reader in read(), the writer waiting for
// work), so a kill now must wake the writer rather than beat it to its check.
bool OtherThreadsAsleep() {
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        if (task.path().filename() == std::to_string(gettid())) continue;
        std::ifstream in(task.path() / "stat");
        const std::string stat((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        if (stat.compare(std::min(stat.rfind(')'), stat.size()), 3, ") S") != 0) return false;
    }
    return true;
}

// A pipe between the test (the client's side) and readQ/writeQ; the test
// keeps toUI.write and fromUI.read.
struct PipeHarness {
    PipeHarness() {
        std::signal(SIGPIPE, SIG_IGN);  // a vanished peer must be a write error
        readQ.SetDoorbell(arrived);
        pipe->AddReference();
    }
    bool Start() {
        readFd = toUI.read.Get();
        writeFd = fromUI.write.Get();
        return pipe->Start(toUI.read.Release(), fromUI.write.Release());
    }
    // What the reader has queued, once there are at least `count` messages.
    std::vector<std::string> Incoming(std::size_t count) {
        while (received.size() < count && arrived->WaitFor(std::chrono::seconds(10))) {
            FiFoQueue<UIMessage> batch;
            readQ.ReadMessages(batch);
            while (!batch.IsEmpty()) received.push_back(batch.TakeFront().text.Str());
        }
        return received;
    }
    // End of file ends the reader; the test's reference goes last.
    ~PipeHarness() {
        toUI.write.Reset();
        EXPECT_TRUE(WaitUntil([&] { return pipe->GetRefCount() == 1; }));
        if (pipe->RemoveReference() == 0) delete pipe;
        EXPECT_TRUE(WaitUntil([] { return PortableThread::LiveCount() == 0; }));
    }

    Channel toUI, fromUI;
    int readFd = -1, writeFd = -1;
    UIMessageQueue readQ, writeQ;
    std::shared_ptr<Doorbell> arrived = std::make_shared<Doorbell>();
    std::vector<std::string> received;
    UnixPipe* pipe = new UnixPipe(readQ, writeQ);
};

// The largest frame is written out here, not taken from the code: a change of
// the code's limit must show as a failure.
constexpr std::uint32_t kLargestFrame = 2097152;

TEST(UnixPipeReading, DribbledEmptyAndLargestFramesArrive) {
    PipeHarness h;
    ASSERT_TRUE(h.Start());
    const std::string doc = "<ClientToUI><ReadyForData/></ClientToUI>";
    bool largestTaken = false;
    std::thread writer([&] {
        WriteAll(h.toUI.write.Get(), Frame(""));
        for (char byte : Frame(doc)) WriteAll(h.toUI.write.Get(), std::string(1, byte));
        largestTaken = WriteWithin(h.toUI.write.Get(), Frame(std::string(kLargestFrame, 'p')));
    });
    const std::vector<std::string> got = h.Incoming(3);
    writer.join();
    EXPECT_TRUE(largestTaken);
    ASSERT_EQ(got.size(), 3u);
    EXPECT_EQ(got[0], "");
    EXPECT_EQ(got[1], doc);
    EXPECT_EQ(got[2].size(), kLargestFrame);
    EXPECT_FALSE(h.pipe->Killed());
}

TEST(UnixPipeReading, OverlongLengthKillsWithoutReadingFurther) {
    PipeHarness h;
    ASSERT_TRUE(h.Start());
    WriteAll(h.toUI.write.Get(), Header(kLargestFrame + 1) + "rest");
    EXPECT_TRUE(SeesEndOfFile(h.fromUI.read.Get()));  // the kill closed our input
    std::string rest;
    ASSERT_TRUE(ReadExactly(h.readFd, 4, rest));
    EXPECT_EQ(rest, "rest");
    EXPECT_TRUE(h.readQ.IsEmpty());
}

TEST(UnixPipeReading, EndOfFileInsideFrameKills) {
    for (const std::string& sent : {std::string("\x05\x00", 2), Header(5) + "ab"}) {
        SCOPED_TRACE(sent.size());
        PipeHarness h;
        ASSERT_TRUE(h.Start());
        WriteAll(h.toUI.write.Get(), sent);
        h.toUI.write.Reset();
        EXPECT_TRUE(SeesEndOfFile(h.fromUI.read.Get()));
        EXPECT_TRUE(h.readQ.IsEmpty());
    }
}

TEST(UnixPipeWriting, QueuedMessagesLeaveInOrderAndEmptyOneCloses) {
    PipeHarness h;
    h.writeQ.WriteMessage(Message("one"));  // before the writer runs
    ASSERT_TRUE(h.Start());
    const std::string big(100000, '3');  // more than a pipe buffer
    for (const std::string& text : {std::string("two"), big, std::string(), std::string("never sent")})
        h.writeQ.WriteMessage(Message(text));
    std::string frame;
    for (const std::string& expected : {std::string("one"), std::string("two"), big}) {
        ASSERT_TRUE(ReadFrame(h.fromUI.read.Get(), frame));
        EXPECT_EQ(frame, expected);
    }
    EXPECT_TRUE(SeesEndOfFile(h.fromUI.read.Get()));
}

TEST(UnixPipeWriting, PeerThatStoppedReadingKillsThePipe) {
    PipeHarness h;
    ASSERT_TRUE(h.Start());
    h.fromUI.read.Reset();
    h.writeQ.WriteMessage(Message("nobody listens"));
    EXPECT_TRUE(WaitUntil([&] { return h.pipe->Killed(); }));
}

TEST(UnixPipeKill, SecondKillClosesNothing) {
    PipeHarness h;
    ASSERT_TRUE(h.Start());
    h.pipe->Kill();
    EXPECT_TRUE(SeesEndOfFile(h.fromUI.read.Get()));
    UniqueFd devNull(open("/dev/null", O_WRONLY | O_CLOEXEC));
    ASSERT_EQ(dup2(devNull.Get(), h.writeFd), h.writeFd);  // the number now belongs to another file
    UniqueFd reused(h.writeFd);
    h.pipe->Kill();
    EXPECT_NE(fcntl(h.writeFd, F_GETFD), -1);
}

TEST(UnixPipeKill, KillOrThreadKillerWakesTheIdleWriter) {
    for (bool byThreadKiller : {false, true}) {
        SCOPED_TRACE(byThreadKiller);
        PipeHarness h;
        ASSERT_TRUE(h.Start());
        ASSERT_TRUE(WaitUntil(OtherThreadsAsleep));
        if (byThreadKiller) ThreadKiller::m_kill = true;
        else h.pipe->Kill();
        EXPECT_TRUE(SeesEndOfFile(h.fromUI.read.Get()));
        ThreadKiller::m_kill = false;
    }  // the reader leaves at end of file; only a woken writer lets the count drop
}

TEST(UnixPipeKill, DescriptorZeroIsNeverClosed) {
    UniqueFd savedInput(fcntl(0, F_DUPFD_CLOEXEC, 3));  // -1 if we were started without one
    struct stat before {}, after {};
    {
        PipeHarness h;
        ASSERT_EQ(dup2(h.toUI.read.Get(), 0), 0);
        ASSERT_EQ(fstat(0, &before), 0);
        ASSERT_TRUE(h.pipe->Start(0, h.fromUI.write.Release()));
    }  // end of file, kill, delete: none of them may close 0
    EXPECT_EQ(fstat(0, &after), 0);
    EXPECT_EQ(after.st_ino, before.st_ino);
    if (savedInput.Valid()) dup2(savedInput.Get(), 0);
    else close(0);
}

}  // namespace
