#include "pipe/UnixPipe.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "base/files/UniqueFd.h"
#include "pipe/Doorbell.h"
#include "pipe/PortableThread.h"
#include "pipe/ThreadKiller.h"
#include "pipe/UnixIO.h"
#include "tests/pipe/PipeTestSupport.h"

namespace {

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

TEST(UnixPipeReading, DribbledEmptyAndLargestFramesArrive) {
    PipeHarness h;
    ASSERT_TRUE(h.Start());
    const std::string doc = "<ClientToUI><ReadyForData/></ClientToUI>";
    bool largestTaken = false;
    std::thread writer([&] {
        WriteAll(h.toUI.write.Get(), Frame(""));
        for (char byte : Frame(doc)) WriteAll(h.toUI.write.Get(), std::string(1, byte));
        largestTaken = WriteWithin(h.toUI.write.Get(), Frame(std::string(kMaxFramePayload, 'p')));
    });
    const std::vector<std::string> got = h.Incoming(3);
    writer.join();
    EXPECT_TRUE(largestTaken);
    ASSERT_EQ(got.size(), 3u);
    EXPECT_EQ(got[0], "");
    EXPECT_EQ(got[1], doc);
    EXPECT_EQ(got[2].size(), kMaxFramePayload);
    EXPECT_FALSE(h.pipe->Killed());
}

TEST(UnixPipeReading, OverlongLengthKillsWithoutReadingFurther) {
    PipeHarness h;
    ASSERT_TRUE(h.Start());
    WriteAll(h.toUI.write.Get(), Header(kMaxFramePayload + 1) + "rest");
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
