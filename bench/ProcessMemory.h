#pragma once

// What one more process costs a desktop, read from /proc: its private memory,
// counted while every file it maps but its own executable is mapped here too,
// as the desktop's other programs map the libraries. So a library page counts
// as shared whatever else happens to run on the machine (another copy of the
// program, a test), and only the pages that are really the process's own
// count. The memory benchmark and the soak read it alike.

#include <sys/types.h>

#include <string>
#include <utility>
#include <vector>

// A field given in kB by /proc/<pid>/<file> ("self" for this process), such
// as "VmHWM" of "status"; -1 when it cannot be read.
long ProcKiB(const std::string& pid, const char* file, const char* field);

// Private_Clean + Private_Dirty of /proc/<pid>/smaps_rollup; -1 when it
// cannot be read.
long PrivateKiB(const std::string& pid);

// The files a desktop's other programs map too: every file the process maps
// but its own executable (the shared libraries, the locale's data).
std::vector<std::string> SharedFiles(const std::string& pid);

// Holds every page of `files` mapped in this process while alive.
class Neighbour {
public:
    explicit Neighbour(const std::vector<std::string>& files);
    ~Neighbour();
    Neighbour(const Neighbour&) = delete;
    Neighbour& operator=(const Neighbour&) = delete;

private:
    std::vector<std::pair<void*, std::size_t>> mappings_;
};

// PrivateKiB with a Neighbour holding the process's shared files meanwhile.
long PrivateKiBOnADesktop(pid_t pid);
