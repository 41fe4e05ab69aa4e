// The real program, driven through real pipes as the client drives it. The
// child's environment has no DISPLAY, so after initialisation it ends on the
// failed display.

#include <gtest/gtest.h>

#include <chrono>
#include <fcntl.h>
#include <filesystem>
#include <poll.h>
#include <set>
#include <signal.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include "base/files/FileOperations.h"
#include "base/unicode/Base64.h"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

// Generous: the program needs about three seconds (a poll, then its exit pause).
constexpr auto kExitBound = std::chrono::seconds(6);

class Child {
public:
    Child() {
        int in[2], out[2];
        EXPECT_EQ(::pipe2(in, O_CLOEXEC), 0);
        EXPECT_EQ(::pipe2(out, O_CLOEXEC), 0);
        pid_ = ::fork();
        if (pid_ == 0) {
            ::dup2(in[0], 0);
            ::dup2(out[1], 1);
            char* argv[] = {const_cast<char*>(ZAM_CLIENTUI_BINARY), nullptr};
            char* envp[] = {const_cast<char*>("PATH=/usr/bin:/bin"), const_cast<char*>("LC_ALL=C"), nullptr};
            ::execve(ZAM_CLIENTUI_BINARY, argv, envp);
            ::_exit(127);
        }
        ::close(in[0]);
        ::close(out[1]);
        toChild_ = in[1];
        fromChild_ = out[0];
    }
    ~Child() {
        CloseInput();
        ::close(fromChild_);
        if (pid_ > 0 && !reaped_) {
            ::kill(pid_, SIGKILL);
            ::waitpid(pid_, nullptr, 0);
        }
    }
    void Write(const std::string& bytes) {
        ASSERT_EQ(::write(toChild_, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    }
    void Send(const std::string& document) {
        const std::uint32_t n = static_cast<std::uint32_t>(document.size());
        Write(std::string{char(n & 0xFF), char((n >> 8) & 0xFF), char((n >> 16) & 0xFF), char(n >> 24)} + document);
    }
    void CloseInput() {
        if (toChild_ >= 0) ::close(toChild_);
        toChild_ = -1;
    }
    // Reads `n` bytes, waiting a few seconds at most; fewer at end of file.
    std::string Read(std::size_t n) {
        std::string bytes;
        for (const auto until = Clock::now() + kExitBound; bytes.size() < n && Clock::now() < until;) {
            pollfd p{fromChild_, POLLIN, 0};
            if (::poll(&p, 1, 100) <= 0) continue;
            char buffer[4096];
            const ssize_t got = ::read(fromChild_, buffer, std::min(sizeof buffer, n - bytes.size()));
            if (got <= 0) break;
            bytes.append(buffer, static_cast<std::size_t>(got));
        }
        return bytes;
    }
    std::string ReadFrame() {
        const std::string header = Read(4);
        std::uint32_t n = 0;
        for (int i = 3; i >= 0 && header.size() == 4; --i) n = n << 8 | static_cast<unsigned char>(header[i]);
        return header.size() == 4 ? Read(n) : "(no frame)";
    }
    // The exit status, or -1 if it has not ended within the bound.
    int WaitForExit(Clock::duration* took = nullptr) {
        for (const auto start = Clock::now(); Clock::now() - start < kExitBound; ::usleep(20000)) {
            int status = 0;
            if (::waitpid(pid_, &status, WNOHANG) != pid_) continue;
            reaped_ = true;
            if (took) *took = Clock::now() - start;
            return WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
        }
        return -1;
    }

private:
    pid_t pid_ = -1;
    bool reaped_ = false;
    int toChild_ = -1, fromChild_ = -1;
};

const char kReadyForData[] =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<ClientToUI>\n\t<ReadyForData></ReadyForData>\n</ClientToUI>";

TEST(Process, AnnouncesItselfAndEndsSoonAfterTheClientCloses) {
    Child child;
    EXPECT_EQ(child.ReadFrame(), kReadyForData);
    child.CloseInput();
    Clock::duration took{};
    EXPECT_EQ(child.WaitForExit(&took), 0);
    // At most a second until the next poll, then the two-second exit pause;
    // the slack covers a loaded machine running the sanitizer builds.
    EXPECT_LT(took, std::chrono::milliseconds(5000));
}

TEST(Process, AnOversizedFrameEndsIt) {
    Child child;
    EXPECT_EQ(child.ReadFrame(), kReadyForData);
    child.Write(std::string("\x01\x00\x20\x00", 4));  // 2 MiB + 1
    EXPECT_EQ(child.WaitForExit(), 0);
}

TEST(Process, InitialisationReplacesTheBaseDirectoryThenTheDisplayFails) {
    char pattern[] = "/tmp/zam-process-XXXXXX";
    ASSERT_NE(::mkdtemp(pattern), nullptr);
    const std::string root = pattern, base = root + "/base";
    fs::create_directories(base + "/old/deeper");
    WriteWholeFile(MakeFileLocation(base + "/stale.txt"), "stale");
    WriteWholeFile(MakeFileLocation(base + "/old/deeper/inner.txt"), "inner");

    Child child;
    EXPECT_EQ(child.ReadFrame(), kReadyForData);
    const auto file = [](const char* name, const char* bytes) {
        return std::string("<SupportFiles><FileName>") + name + "</FileName><Content>" +
               Base64Encoder::Encode(bytes).Str() + "</Content></SupportFiles>";
    };
    child.Send("<ClientToUI><InitializationInfo><BaseDirectory>" + base + "</BaseDirectory>" +
               file("page.html", "<p>hello</p>") + file("_brand.xlat", "Snooze\tLater") +
               "<InitialUISettings><UseLocale>false</UseLocale></InitialUISettings></InitializationInfo></ClientToUI>");
    EXPECT_EQ(child.WaitForExit(), 255);  // no display: the X side ends it with -1

    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(base)) names.insert(entry.path().filename());
    EXPECT_EQ(names, (std::set<std::string>{"_brand.xlat", "page.html"}));
    EXPECT_EQ(ReadWholeFile(MakeFileLocation(base + "/page.html")), "<p>hello</p>");
    if (root.rfind("/tmp/zam-process-", 0) == 0 && root.size() > 17) fs::remove_all(root);
}

}  // namespace
