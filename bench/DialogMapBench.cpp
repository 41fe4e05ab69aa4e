// The action request dialog on a private Xvfb: from the start of its show,
// with 10 actions pending, to the MapNotify of its shell (median and worst of
// 20), beside xmessage's whole start-to-map time on the same server; then the
// heap in use (mallinfo2) after 10 and after 1,000 show/hide cycles.
//
//   bench/DialogMapBench [path-of-xmessage]
//
// The heap is counted with glibc's per-thread cache off (the program re-runs
// itself so), since cached blocks count as in use.

#include <malloc.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "actions/PendingActions.h"
#include "app/Settings.h"
#include "base/time/TimeObject.h"
#include "ui/ActionRequestDialog.h"
#include "ui/DefaultFontSet.h"
#include "ui/XGlobals.h"

#include <X11/Intrinsic.h>

namespace {

using Clock = std::chrono::steady_clock;

double Milliseconds(Clock::duration d) { return std::chrono::duration<double, std::milli>(d).count(); }

// Xvfb -displayfd: the server tells its own number, none is guessed.
pid_t StartXvfb(std::string& name) {
    int fds[2];
    if (pipe(fds) != 0) return -1;
    const pid_t pid = fork();
    if (pid == 0) {
        close(fds[0]);
        const std::string fd = std::to_string(fds[1]);
        execlp("Xvfb", "Xvfb", "-nolisten", "tcp", "-noreset", "-screen", "0", "1024x768x24", "-displayfd", fd.c_str(),
               static_cast<char*>(nullptr));
        _exit(127);
    }
    close(fds[1]);
    char buffer[16] = {};
    const ssize_t n = read(fds[0], buffer, sizeof buffer - 1);
    close(fds[0]);
    name = ":" + std::string(buffer, n > 0 ? static_cast<std::size_t>(n) : 0);
    name.erase(name.find_last_not_of("\n") + 1);
    return pid;
}

// Waits on `observer` (selecting SubstructureNotify on the root) for the next
// top-level MapNotify; its window, or 0 after 10 s.
Window NextMap(Display* observer) {
    const auto end = Clock::now() + std::chrono::seconds(10);
    while (Clock::now() < end) {
        while (XPending(observer) > 0) {
            XEvent event;
            XNextEvent(observer, &event);
            if (event.type == MapNotify) return event.xmap.window;
        }
        usleep(100);
    }
    return 0;
}

void Report(const char* what, std::vector<double> times) {
    std::sort(times.begin(), times.end());
    std::printf("%-34s median %7.2f ms  worst %7.2f ms  (%zu runs)\n", what, times[times.size() / 2], times.back(),
                times.size());
}

long RssKiB() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind("VmRSS:", 0) == 0) return std::stol(line.substr(6));
    }
    return -1;
}

}  // namespace

int main(int argc, char** argv) {
    // Without the per-thread cache, freed blocks leave the heap-in-use count
    // at once; with it, the count grows while the cache fills.
    if (getenv("GLIBC_TUNABLES") == nullptr) {
        setenv("GLIBC_TUNABLES", "glibc.malloc.tcache_count=0", 1);
        execv("/proc/self/exe", argv);
    }
    const char* xmessage = argc > 1 ? argv[1] : "xmessage";
    std::string displayName;
    const pid_t server = StartXvfb(displayName);
    setenv("DISPLAY", displayName.c_str(), 1);
    setenv("XFILESEARCHPATH", "/nonexistent/%N", 1);
    setenv("XUSERFILESEARCHPATH", "/nonexistent/%N", 1);
    Display* observer = XOpenDisplay(nullptr);
    if (server <= 0 || observer == nullptr) return 1;
    XSelectInput(observer, DefaultRootWindow(observer), SubstructureNotifyMask);
    XSync(observer, True);

    // The peer: a whole process, from fork to its window's map.
    std::vector<double> peer;
    for (int i = 0; i < 20; ++i) {
        const auto start = Clock::now();
        const pid_t child = fork();
        if (child == 0) {
            execlp(xmessage, xmessage, "One line of text.", static_cast<char*>(nullptr));
            _exit(127);
        }
        if (NextMap(observer) != 0) peer.push_back(Milliseconds(Clock::now() - start));
        kill(child, SIGTERM);
        waitpid(child, nullptr, 0);
        XSync(observer, True);
    }

    // Ours, inside the running program: display open and font sets made.
    international = false;
    XtToolkitInitialize();
    app_context = XtCreateApplicationContext();
    char name[] = "ZAMClientUI";
    char* args[] = {name, nullptr};
    int count = 1;
    display = XtOpenDisplay(app_context, nullptr, nullptr, "XZAMClientUI", nullptr, 0, &count, args);
    if (display == nullptr) return 1;
    ConfigValidDefaultFontSet();
    for (int i = 0; i < 10; ++i) {
        ActionRequest action;
        action.id = static_cast<unsigned long long>(i + 1);
        action.title = ("Security update " + std::to_string(i + 1)).c_str();
        action.shortDescription = "Installs the update.";
        action.deadline = TimeObject(Instant::Now() + TimeInterval(3600LL * 1000000 * (i + 1)), TimeZone(0));
        actions.push_back(action);
    }
    const auto cycle = [] {
        ActionRequestDialog::Show(false, TimeInterval(300000000), true);
        XFlush(display);
    };
    const auto hide = [] {
        ActionRequestDialog::Hide();
        XSync(display, False);
        while (XtAppPending(app_context) & XtIMXEvent) XtAppProcessEvent(app_context, XtIMXEvent);
    };
    std::vector<double> ours;
    for (int i = 0; i < 20; ++i) {
        const auto start = Clock::now();
        cycle();
        if (NextMap(observer) != 0) ours.push_back(Milliseconds(Clock::now() - start));
        hide();
        XSync(observer, True);
    }
    Report("xmessage: start to map", peer);
    Report("action dialog: show to map", ours);

    std::size_t heapAt10 = 0;
    long rssAt10 = 0;
    for (int i = 1; i <= 1000; ++i) {
        cycle();
        hide();
        if (i == 10) heapAt10 = mallinfo2().uordblks, rssAt10 = RssKiB();
    }
    const std::size_t heapAt1000 = mallinfo2().uordblks;
    std::printf("heap in use after 10 cycles %zu B, after 1000 %zu B (%+ld B); RSS %ld KiB, then %ld KiB\n", heapAt10,
                heapAt1000, static_cast<long>(heapAt1000) - static_cast<long>(heapAt10), rssAt10, RssKiB());

    XCloseDisplay(observer);
    kill(server, SIGTERM);
    waitpid(server, nullptr, 0);
    return 0;
}
