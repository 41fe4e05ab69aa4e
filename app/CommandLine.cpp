#include "app/CommandLine.h"

#include <cstring>

#include "ZAMVersion.h"

CommandLineRequest ReadCommandLine(int argc, const char* const* argv) {
    if (argc != 2 || argv[1] == nullptr) return CommandLineRequest::Run;
    if (std::strcmp(argv[1], "--version") == 0) return CommandLineRequest::PrintVersion;
    if (std::strcmp(argv[1], "--help") == 0) return CommandLineRequest::PrintHelp;
    return CommandLineRequest::Run;
}

const char* VersionText() { return "ZAMClientUI " ZAM_VERSION "\n"; }

const char* HelpText() {
    return "usage: ZAMClientUI [X Toolkit options]\n"
           "       ZAMClientUI --version | --help\n"
           "\n"
           "The desktop side of the ZAM agent. The agent starts ZAMClientUI for the\n"
           "logged-in user, with its pipe on standard input and output and DISPLAY set,\n"
           "and the program shows the agent's action requests, messages and quiet-period\n"
           "notices until the agent closes the pipe. It is not meant to be started by\n"
           "hand: to see it at work, let the sample client start it, e.g.\n"
           "  zam-client /usr/share/doc/zamclientui/examples/restart.scenario\n"
           "\n"
           "Other options (-display, -xrm, -name, ...) are read by the X Toolkit once the\n"
           "agent has initialised the program. Its look comes from the X resources of\n"
           "the class XZAMClientUI.\n"
           "\n"
           "Exit status: 0 when the agent closes the pipe or the display goes away,\n"
           "255 when the display cannot be opened or the X server reports an error.\n"
           "See ZAMClientUI(1) and zam-client(1).\n";
}

const char* TerminalNotice() {
    return "ZAMClientUI: the ZAM agent starts this program over a pipe; "
           "to try it by hand, run zam-client (see zam-client(1))\n";
}
