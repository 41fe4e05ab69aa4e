// The real program's peak resident memory beside xmessage's, on a private
// Xvfb: ZAMClientUI started as the client starts it (a pipe on each side),
// given an InitializationInfo and one document of 100 action requests, read
// once its action dialog is mapped; xmessage showing one line, read once its
// window is mapped. Both readings are VmHWM, the peak resident set.
//
//   bench/ActionDialogMemoryBench [path-of-xmessage]
//
// Each program runs under LANG=C, and under C.UTF-8 where ours is told to use
// the locale (UseLocale: its widgets draw through font sets); the goal is at
// most 1.5 times xmessage.

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

#include "bench/BenchXvfb.h"
#include "bench/ClientDocument.h"
#include "client/BaseDirectory.h"
#include "client/UIProcess.h"
#include "protocol/Documents.h"
#include "protocol/InitializationInfo.h"

// X headers last: they define None, True, False and friends as macros.
#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace {

constexpr auto kSettle = std::chrono::milliseconds(300);  // for the drawing that follows the map

// Waits for the map of a top-level window titled `title`; false after 10 s.
bool WaitForWindow(Display* observer, const char* title) {
    for (int maps = 0; maps < 10; ++maps) {
        const Window window = NextMap(observer);
        if (window == 0) return false;
        char* name = nullptr;
        const bool found = XFetchName(observer, window, &name) != 0 && name != nullptr && std::string(name) == title;
        XFree(name);
        if (found) return true;
    }
    return false;
}

// In KiB. `written` is what the process itself wrote (heap, stacks, the
// libraries' data): the peak also counts in full the code pages of the shared
// libraries, which a desktop running other toolkit or C++ programs holds once.
struct Reading {
    long peak = -1;
    long written = -1;
};

// xmessage's peak varies by a few per cent from run to run, ours hardly (and
// each of ours takes the two seconds of its start-up ticks).
constexpr int kPeerRuns = 5;

// Each figure's median on its own; a failed run (-1) sorts first.
Reading Median(std::vector<Reading> runs) {
    std::vector<long> peaks, written;
    for (const Reading& run : runs) peaks.push_back(run.peak), written.push_back(run.written);
    std::sort(peaks.begin(), peaks.end());
    std::sort(written.begin(), written.end());
    if (peaks.front() <= 0) return {};
    return {peaks[peaks.size() / 2], written[written.size() / 2]};
}

Reading Read(pid_t pid) {
    std::this_thread::sleep_for(kSettle);
    const std::string id = std::to_string(pid);
    return {ProcKiB(id, "status", "VmHWM"), ProcKiB(id, "smaps_rollup", "Private_Dirty")};
}

Reading Xmessage(const BenchXvfb& server, const char* xmessage, const std::string& lang) {
    const pid_t child = fork();
    if (child == 0) {
        setenv("LANG", lang.c_str(), 1);
        execlp(xmessage, xmessage, "One line of text.", static_cast<char*>(nullptr));
        _exit(127);
    }
    Reading reading;
    if (child > 0 && WaitForWindow(server.Observer(), "xmessage")) reading = Read(child);
    if (child > 0) {
        kill(child, SIGTERM);
        waitpid(child, nullptr, 0);
    }
    XSync(server.Observer(), True);
    return reading;
}

Reading Ours(const BenchXvfb& server, const std::string& lang) {
    Reading reading;
    try {
        BaseDirectory base("");
        UIProcess program;
        program.Start(ZAM_CLIENTUI_BINARY, {},
                      {"DISPLAY=" + server.Name(), "PATH=/usr/bin:/bin", "LANG=" + lang, "HOME=/nonexistent",
                       "XFILESEARCHPATH=/nonexistent/%N", "XUSERFILESEARCHPATH=/nonexistent/%N"});
        std::string ready;
        if (program.Next(ready, SteadyClock::now() + std::chrono::seconds(10)) != UIProcess::Event::Frame) {
            return reading;
        }
        InitializationInfo info;
        info.baseDirectory = MakeFileLocation(base.Path());
        info.settings.useLocale = lang != "C";
        program.Send(ConvertToXML(info).Str());
        program.Send(ClientDocumentOf(100));
        if (WaitForWindow(server.Observer(), "Action Requests")) reading = Read(program.Pid());
        program.Stop(std::chrono::seconds(5));
    } catch (const ClientError& error) {
        std::fprintf(stderr, "%s\n", error.message.c_str());
    }
    XSync(server.Observer(), True);
    return reading;
}

}  // namespace

int main(int argc, char** argv) {
    const char* xmessage = argc > 1 ? argv[1] : "xmessage";
    BenchXvfb server;
    if (!server.Start()) {
        std::fprintf(stderr, "no private X server\n");
        return 1;
    }
    bool met = true;
    for (const std::string lang : {"C", "C.UTF-8"}) {
        std::vector<Reading> peers;
        for (int i = 0; i < kPeerRuns; ++i) peers.push_back(Xmessage(server, xmessage, lang));
        const Reading peer = Median(peers), ours = Ours(server, lang);
        if (peer.peak <= 0 || ours.peak <= 0) {
            std::printf("LANG=%s: a window did not appear\n", lang.c_str());
            return 1;
        }
        const double ratio = static_cast<double>(ours.peak) / static_cast<double>(peer.peak);
        std::printf("LANG=%-7s peak RSS: ZAMClientUI with 100 actions %5ld KiB, xmessage %5ld KiB: %.2fx "
                    "(goal at most 1.5x); written %5ld KiB vs %5ld KiB (xmessage: medians of %d)\n",
                    lang.c_str(), ours.peak, peer.peak, ratio, ours.written, peer.written, kPeerRuns);
        met = met && ratio <= 1.5;
    }
    std::printf("goal %s\n", met ? "met" : "missed");
    return 0;
}
