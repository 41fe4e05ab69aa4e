// How the action request dialog scales, on a private Xvfb with the dialog
// shown: the time to handle one batch (one client document of N action
// requests, put on the read queue as the pipe's reader puts it there and
// handled by the dispatch as the tick handles it, up to the screen having
// taken the new list) for N = 1,000, 10,000 and 50,000, and the time of one
// refresh (list, texts and buttons) with N pending. Per-action costs beside
// them show whether the cost grows linearly. It fails when a batch loses an
// action or 50,000 rows wrap the list's 16-bit height.
//
//   bench/ActionDialogScaleBench
//
// The documents of 10,000 and 50,000 are larger than one pipe frame may be
// (2 MiB holds about 3,000 such requests): they measure the program's side only.

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "actions/PendingActions.h"
#include "app/ClientLink.h"
#include "app/DialogCalls.h"
#include "app/Dispatch.h"
#include "bench/BenchXvfb.h"
#include "bench/ClientDocument.h"
#include "ui/ActionRequestDialog.h"
#include "ui/XDialogCalls.h"
#include "ui/XGlobals.h"

#include <X11/Intrinsic.h>
#include <X11/StringDefs.h>
#include <X11/Xaw/List.h>

namespace {

// Until the server has taken every request and the toolkit has handled
// every event (the list's exposures among them).
void Settle() {
    XSync(display, False);
    while (XtAppPending(app_context) & XtIMXEvent) XtAppProcessEvent(app_context, XtIMXEvent);
}

double Median(std::vector<double> times) {
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

// One batch of `document` with nothing pending before it.
double Batch(const std::string& document) {
    actions.clear();
    ActionRequestDialog::Update();
    ActionRequestDialog::FlushRefresh();
    Settle();
    UIMessage message;
    message.text = AutoUString<UTF8>(document);
    readQ.WriteMessage(std::move(message));
    const auto start = BenchClock::now();
    ProcessMessagesFromClient();
    Settle();
    return Milliseconds(BenchClock::now() - start);
}

// The action list's height, the list found as a person's tool would: the
// List inside "viewport" of the top-level window holding "actiontitle".
int ActionListHeight() {
    Window root = 0, parent = 0, *children = nullptr;
    unsigned count = 0;
    XQueryTree(display, DefaultRootWindow(display), &root, &parent, &children, &count);
    Widget viewport = nullptr;
    for (unsigned i = 0; i < count; ++i) {
        const Widget top = XtWindowToWidget(display, children[i]);
        if (top != nullptr && XtNameToWidget(top, "*actiontitle") != nullptr) viewport = XtNameToWidget(top, "*viewport");
    }
    XFree(children);
    WidgetList inside = nullptr;
    Cardinal insideCount = 0;
    if (viewport != nullptr) XtVaGetValues(viewport, XtNchildren, &inside, XtNnumChildren, &insideCount, nullptr);
    for (Cardinal i = 0; i < insideCount; ++i) {
        if (XtClass(inside[i]) != listWidgetClass) continue;
        Dimension height = 0;
        XtVaGetValues(inside[i], XtNheight, &height, nullptr);
        return height;
    }
    return -1;
}

// One refresh with what is pending now.
double Refresh() {
    ActionRequestDialog::Update();
    const auto start = BenchClock::now();
    ActionRequestDialog::FlushRefresh();
    Settle();
    return Milliseconds(BenchClock::now() - start);
}

}  // namespace

int main() {
    BenchXvfb server;
    if (!server.Start() || !OpenProgramDisplay()) {
        std::fprintf(stderr, "no private X server\n");
        return 1;
    }
    static XDialogCalls screen;
    WireDialogCalls(&screen);
    ActionRequestDialog::Show(false, TimeInterval(300000000), true);
    Settle();
    if (NextMap(server.Observer()) == 0) return 1;

    std::printf("%8s %10s %14s %12s %16s %12s\n", "actions", "document", "batch", "per action", "refresh alone",
                "per action");
    for (const int count : {1000, 10000, 50000}) {
        const std::string document = ClientDocumentOf(count);
        const int runs = count < 50000 ? 5 : 3;
        std::vector<double> batches, refreshes;
        for (int i = 0; i < runs; ++i) batches.push_back(Batch(document));
        if (actions.size() != static_cast<std::size_t>(count)) {
            std::printf("a batch of %d left %zu pending\n", count, actions.size());
            return 1;
        }
        // Sizes are 16 bits: 50,000 rows must cut the list at 32,767 pixels, never wrap it.
        if (count == 50000 && ActionListHeight() != 32767) {
            std::printf("50,000 rows made the action list %d pixels high, not 32,767\n", ActionListHeight());
            return 1;
        }
        for (int i = 0; i < runs; ++i) refreshes.push_back(Refresh());
        const double batch = Median(batches), refresh = Median(refreshes);
        std::printf("%8d %7zu KiB %11.1f ms %9.1f µs %13.1f ms %9.1f µs\n", count, document.size() / 1024, batch,
                    batch * 1000 / count, refresh, refresh * 1000 / count);
    }
    actions.clear();
    ActionRequestDialog::Hide();
    return 0;
}
