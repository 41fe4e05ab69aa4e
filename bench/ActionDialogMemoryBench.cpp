// The real program's memory beside xmessage's, on a private Xvfb:
// ZAMClientUI started as the client starts it (a pipe on each side), given an
// InitializationInfo and one document of 100 action requests, read once its
// action dialog is mapped; xmessage showing one line, read once its window is
// mapped.
//
//   bench/ActionDialogMemoryBench [--breakdown] [path-of-xmessage]
//
// Three figures each, in KiB. Private memory (Private_Clean + Private_Dirty of
// /proc/PID/smaps_rollup) is what one more such process costs a desktop: the
// pages no other process maps. PSS adds each shared page divided by the
// number of processes that map it; the peak RSS (VmHWM) counts every shared
// page in full. Each program runs under LANG=C, and under C.UTF-8 where ours
// is told to use the locale (UseLocale: its widgets draw through font sets).
// The goal: private memory at most 1.5 times xmessage's in both locales.
// --breakdown also lists where the private memory lies, mapping by mapping
// (ours, and xmessage's in its first run).

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "bench/BenchXvfb.h"
#include "bench/ProcessMemory.h"
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

// In KiB; -1 when the process could not be read.
struct Reading {
    long privateKiB = -1;
    long pss = -1;
    long peak = -1;
    // --breakdown: "  412 KiB  libX11.so.6.4.0 r-xp" lines, largest first.
    std::string breakdown;
};

// xmessage's figures vary by a few per cent from run to run, ours hardly (and
// each of ours takes the two seconds of its start-up ticks).
constexpr int kPeerRuns = 5;

// Each figure's median on its own; a failed run (-1) sorts first.
Reading Median(const std::vector<Reading>& runs) {
    const auto median = [&](long Reading::*figure) {
        std::vector<long> values;
        for (const Reading& run : runs) values.push_back(run.*figure);
        std::sort(values.begin(), values.end());
        return values.front() < 0 ? -1L : values[values.size() / 2];
    };
    return {median(&Reading::privateKiB), median(&Reading::pss), median(&Reading::peak), ""};
}

// Private memory mapping by mapping, from /proc/PID/smaps. Anonymous
// mappings are told apart by their size: the main heap is "[heap]", a thread's
// stack an 8 MiB mapping, a thread's malloc arena a 64 MiB reservation.
std::string Breakdown(const std::string& pid) {
    struct Mapping {
        std::string name;
        long kib = 0;
    };
    std::vector<Mapping> mappings;
    std::ifstream smaps("/proc/" + pid + "/smaps");
    for (std::string line; std::getline(smaps, line);) {
        std::istringstream fields(line);
        std::string first, perms, offset, device, inode, path;
        fields >> first >> perms;
        if (first.find('-') != std::string::npos && first.back() != ':') {
            fields >> offset >> device >> inode >> path;
            const std::size_t dash = first.find('-');
            const unsigned long size =
                (std::stoul(first.substr(dash + 1), nullptr, 16) - std::stoul(first.substr(0, dash), nullptr, 16)) / 1024;
            std::string name = path.empty() ? "anonymous, " + std::to_string(size) + " KiB mapped"
                                            : path.substr(path.rfind('/') + 1);
            mappings.push_back({name + " " + perms, 0});
        } else if (!mappings.empty() && (first == "Private_Clean:" || first == "Private_Dirty:")) {
            mappings.back().kib += std::stol(perms);
        }
    }
    std::stable_sort(mappings.begin(), mappings.end(), [](const Mapping& a, const Mapping& b) { return a.kib > b.kib; });
    std::string text;
    for (const Mapping& mapping : mappings) {
        if (mapping.kib < 8) break;
        text += "    " + std::to_string(mapping.kib) + " KiB  " + mapping.name + "\n";
    }
    return text;
}

Reading Read(pid_t pid, bool breakdown) {
    std::this_thread::sleep_for(kSettle);
    const std::string id = std::to_string(pid);
    const Neighbour neighbour(SharedFiles(id));
    return {PrivateKiB(id), ProcKiB(id, "smaps_rollup", "Pss"), ProcKiB(id, "status", "VmHWM"),
            breakdown ? Breakdown(id) : ""};
}

Reading Xmessage(const BenchXvfb& server, const char* xmessage, const std::string& lang, bool breakdown) {
    const pid_t child = fork();
    if (child == 0) {
        setenv("LANG", lang.c_str(), 1);
        execlp(xmessage, xmessage, "One line of text.", static_cast<char*>(nullptr));
        _exit(127);
    }
    Reading reading;
    if (child > 0 && WaitForWindow(server.Observer(), "xmessage")) reading = Read(child, breakdown);
    if (child > 0) {
        kill(child, SIGTERM);
        waitpid(child, nullptr, 0);
    }
    XSync(server.Observer(), True);
    return reading;
}

Reading Ours(const BenchXvfb& server, const std::string& lang, bool breakdown) {
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
        if (WaitForWindow(server.Observer(), "Action Requests")) reading = Read(program.Pid(), breakdown);
        program.Stop(std::chrono::seconds(5));
    } catch (const ClientError& error) {
        std::fprintf(stderr, "%s\n", error.message.c_str());
    }
    XSync(server.Observer(), True);
    return reading;
}

}  // namespace

int main(int argc, char** argv) {
    bool breakdown = false;
    const char* xmessage = "xmessage";
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--breakdown") == 0) {
            breakdown = true;
        } else {
            xmessage = argv[i];
        }
    }
    BenchXvfb server;
    if (!server.Start()) {
        std::fprintf(stderr, "no private X server\n");
        return 1;
    }
    bool met = true;
    std::string goal;
    for (const std::string lang : {"C", "C.UTF-8"}) {
        std::vector<Reading> peers;
        for (int i = 0; i < kPeerRuns; ++i) peers.push_back(Xmessage(server, xmessage, lang, breakdown && i == 0));
        const Reading peer = Median(peers), ours = Ours(server, lang, breakdown);
        if (peer.peak <= 0 || ours.peak <= 0 || peer.privateKiB <= 0 || ours.privateKiB < 0) {
            std::printf("LANG=%s: a window did not appear\n", lang.c_str());
            return 1;
        }
        const auto ratio = [](long a, long b) { return static_cast<double>(a) / static_cast<double>(b); };
        const double privateRatio = ratio(ours.privateKiB, peer.privateKiB);
        std::printf("LANG=%-7s ZAMClientUI with 100 actions / xmessage (median of %d), KiB: private %5ld / %5ld "
                    "= %.2fx, PSS %5ld / %5ld = %.2fx, peak RSS %5ld / %5ld = %.2fx\n",
                    lang.c_str(), kPeerRuns, ours.privateKiB, peer.privateKiB, privateRatio, ours.pss, peer.pss,
                    ratio(ours.pss, peer.pss), ours.peak, peer.peak, ratio(ours.peak, peer.peak));
        if (breakdown) {
            std::printf("  ZAMClientUI's private memory under LANG=%s:\n%s", lang.c_str(), ours.breakdown.c_str());
            std::printf("  xmessage's (one run):\n%s", peers.front().breakdown.c_str());
        }
        char line[80];
        std::snprintf(line, sizeof line, "%s%.2fx under LANG=%s", goal.empty() ? "" : ", ", privateRatio, lang.c_str());
        goal += line;
        met = met && privateRatio <= 1.5;
    }
    std::printf("goal: private memory at most 1.5x xmessage's in both locales: %s (%s)\n", met ? "met" : "missed",
                goal.c_str());
    return 0;
}
