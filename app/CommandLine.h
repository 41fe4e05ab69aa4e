#pragma once

// The command line as ZAMClientUI reads it before its pipe starts. Standard
// output is the client's pipe, so the only things ever printed there are the
// answers to "--version" and "--help", and only when one of them is the whole
// command line; everything else is left to the toolkit once the display opens.

// What the command line asks of the program before anything else happens.
enum class CommandLineRequest { Run, PrintVersion, PrintHelp };

CommandLineRequest ReadCommandLine(int argc, const char* const* argv);

// "ZAMClientUI <version>\n".
const char* VersionText();
// What "--help" prints: what the program is, who starts it, where to read on.
const char* HelpText();
// The one line written to standard error when standard input is a terminal:
// someone has started the program by hand.
const char* TerminalNotice();
