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
#include <string>
#include <vector>

#include "actions/PendingActions.h"
#include "app/Settings.h"
#include "base/time/TimeObject.h"
#include "bench/BenchXvfb.h"
#include "bench/ProcessMemory.h"
#include "ui/ActionRequestDialog.h"
#include "ui/XGlobals.h"

#include <X11/Intrinsic.h>

namespace {

void Report(const char* what, std::vector<double> times) {
    std::sort(times.begin(), times.end());
    std::printf("%-34s median %7.2f ms  worst %7.2f ms  (%zu runs)\n", what, times[times.size() / 2], times.back(),
                times.size());
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
    BenchXvfb server;
    if (!server.Start()) return 1;
    Display* observer = server.Observer();

    // The peer: a whole process, from fork to its window's map.
    std::vector<double> peer;
    for (int i = 0; i < 20; ++i) {
        const auto start = BenchClock::now();
        const pid_t child = fork();
        if (child == 0) {
            execlp(xmessage, xmessage, "One line of text.", static_cast<char*>(nullptr));
            _exit(127);
        }
        if (NextMap(observer) != 0) peer.push_back(Milliseconds(BenchClock::now() - start));
        kill(child, SIGTERM);
        waitpid(child, nullptr, 0);
        XSync(observer, True);
    }

    // Ours, inside the running program: display open and font sets made.
    if (!OpenProgramDisplay()) return 1;
    for (int i = 0; i < 10; ++i) {
        ActionRequest action;
        action.id = static_cast<unsigned long long>(i + 1);
        action.title = ("Security update " + std::to_string(i + 1)).c_str();
        action.shortDescription = "Installs the update.";
        action.deadline = TimeObject(Instant::Now() + TimeInterval(3600LL * 1000000 * (i + 1)), TimeZone(0));
        AppendAction(action);
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
        const auto start = BenchClock::now();
        cycle();
        if (NextMap(observer) != 0) ours.push_back(Milliseconds(BenchClock::now() - start));
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
        if (i == 10) heapAt10 = mallinfo2().uordblks, rssAt10 = ProcKiB("self", "status", "VmRSS");
    }
    const std::size_t heapAt1000 = mallinfo2().uordblks;
    const long rssAt1000 = ProcKiB("self", "status", "VmRSS");
    std::printf("heap in use after 10 cycles %zu B, after 1000 %zu B (%+ld B); RSS %ld KiB, then %ld KiB\n", heapAt10,
                heapAt1000, static_cast<long>(heapAt1000) - static_cast<long>(heapAt10), rssAt10, rssAt1000);

    return 0;
}
