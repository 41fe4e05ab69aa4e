// ZAMClientUI: the desktop side of the endpoint agent. The client starts it
// with the protocol pipe on standard input and output.

#include <malloc.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>

#include "app/ClientLink.h"
#include "app/CommandLine.h"
#include "app/DialogCalls.h"
#include "app/Dispatch.h"
#include "app/Exit.h"
#include "app/Settings.h"
#include "pipe/Sleep.h"
#include "pipe/UnixPipe.h"
#include "protocol/UIReports.h"
#include "ui/XApplication.h"
#include "ui/XDialogCalls.h"

int main(int argc, char** argv) {
    // A client that stops reading must end us through the pipe's write error
    // (exit status 0), not through the signal.
    std::signal(SIGPIPE, SIG_IGN);

    // Answered before the pipe starts, so nothing else reaches standard output.
    switch (ReadCommandLine(argc, argv)) {
        case CommandLineRequest::PrintVersion:
            std::fputs(VersionText(), stdout);
            return std::fflush(stdout) == 0 ? 0 : 1;
        case CommandLineRequest::PrintHelp:
            std::fputs(HelpText(), stdout);
            return std::fflush(stdout) == 0 ? 0 : 1;
        case CommandLineRequest::Run:
            break;
    }
    // Before the pipe's threads start. One heap for every thread: a thread's
    // own arena keeps the pages of the documents it read dirty for good. And
    // a block of 32 KiB or more (a client document, its frame) is mapped on
    // its own and given back when freed, instead of leaving its pages in
    // the heap for the rest of the session.
    mallopt(M_ARENA_MAX, 1);
    mallopt(M_MMAP_THRESHOLD, 32 * 1024);

    // Started by hand: say so once, then carry on as the agent would have us.
    if (isatty(0) == 1) std::fputs(TerminalNotice(), stderr);

    // The one place that knows both sides: the dispatch, the tick and the
    // exit path reach the X side through this from now on. Its entries are
    // harmless until InitXApp has opened the display.
    static XDialogCalls screen;
    WireDialogCalls(&screen);

    clientPipe = new UnixPipe(readQ, writeQ);
    clientPipe->AddReference();
    // Not checked: a thread that cannot start leaves the pipe alive, and the
    // program waits for an initialisation that never comes.
    clientPipe->Start(0, 1);

    ReadyForData ready;
    WriteXMLToClient(ready);

    // Before the display is opened: only the client's messages, once a second.
    while (!initialized) {
        // Checked before the sleep, so a dead pipe ends us within a second.
        if (clientPipe->Killed()) ExitCleanup(0, "CLOSED");
        MilliSecondSleep(1000);
        ProcessMessagesFromClient();
    }

    InitXApp(argc, argv);

    // The X loop only comes back here after an exception in it.
    UnixPipe* pipe = clientPipe;
    clientPipe = nullptr;
    if (pipe->RemoveReference() == 0) delete pipe;
    return 0;
}
