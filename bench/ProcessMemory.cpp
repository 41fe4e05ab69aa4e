#include "bench/ProcessMemory.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>

long ProcKiB(const std::string& pid, const char* file, const char* field) {
    std::ifstream status("/proc/" + pid + "/" + file);
    const std::string prefix = std::string(field) + ":";
    for (std::string line; std::getline(status, line);) {
        if (line.rfind(prefix, 0) == 0) return std::stol(line.substr(prefix.size()));
    }
    return -1;
}

long PrivateKiB(const std::string& pid) {
    const long clean = ProcKiB(pid, "smaps_rollup", "Private_Clean");
    const long dirty = ProcKiB(pid, "smaps_rollup", "Private_Dirty");
    return clean < 0 || dirty < 0 ? -1 : clean + dirty;
}

std::vector<std::string> SharedFiles(const std::string& pid) {
    char self[4096];
    const ssize_t length = readlink(("/proc/" + pid + "/exe").c_str(), self, sizeof self - 1);
    const std::string executable(self, length > 0 ? static_cast<std::size_t>(length) : 0);
    std::vector<std::string> files;
    std::ifstream maps("/proc/" + pid + "/maps");
    for (std::string line; std::getline(maps, line);) {
        const std::size_t path = line.find('/');
        if (path == std::string::npos || line.compare(path, std::string::npos, executable) == 0) continue;
        if (std::find(files.begin(), files.end(), line.substr(path)) == files.end()) files.push_back(line.substr(path));
    }
    return files;
}

Neighbour::Neighbour(const std::vector<std::string>& files) {
    const long page = sysconf(_SC_PAGESIZE);
    for (const std::string& file : files) {
        const int fd = open(file.c_str(), O_RDONLY | O_CLOEXEC);
        struct stat status {};
        if (fd < 0 || fstat(fd, &status) != 0 || status.st_size == 0) {
            if (fd >= 0) close(fd);
            continue;
        }
        void* start = mmap(nullptr, static_cast<std::size_t>(status.st_size), PROT_READ, MAP_SHARED, fd, 0);
        close(fd);
        if (start == MAP_FAILED) continue;
        mappings_.push_back({start, static_cast<std::size_t>(status.st_size)});
        const volatile char* bytes = static_cast<const char*>(start);
        for (off_t at = 0; at < status.st_size; at += page) (void)bytes[at];
    }
}

Neighbour::~Neighbour() {
    for (const auto& [start, size] : mappings_) munmap(start, size);
}

long PrivateKiBOnADesktop(pid_t pid) {
    const std::string id = std::to_string(pid);
    const Neighbour neighbour(SharedFiles(id));
    return PrivateKiB(id);
}
