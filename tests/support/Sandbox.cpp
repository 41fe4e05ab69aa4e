#include "tests/support/Sandbox.h"

#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;

constexpr char kPrefix[] = "zam-test-";

std::string BaseDirectory() {
    const char* tmpdir = std::getenv("TMPDIR");
    return tmpdir != nullptr && tmpdir[0] == '/' ? tmpdir : "/tmp";
}

[[noreturn]] void Fail(const std::string& why) {
    ADD_FAILURE() << "sandbox: " << why;
    throw std::runtime_error("sandbox: " + why);
}

// A real directory (not a link to one) owned by this user.
bool IsOwnDirectory(const std::string& path) {
    struct stat info {};
    return lstat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode) && info.st_uid == geteuid();
}

// The owner's process id when `name` is "zam-test-<pid>-XXXXXX", else 0.
pid_t OwnerOf(const std::string& name) {
    const std::size_t prefix = sizeof kPrefix - 1;
    const std::size_t dash = name.find('-', prefix);
    if (name.compare(0, prefix, kPrefix) != 0 || dash == std::string::npos || dash == prefix ||
        name.size() != dash + 7 || name.find_first_not_of("0123456789", prefix) != dash) {
        return 0;
    }
    return static_cast<pid_t>(std::strtol(name.c_str() + prefix, nullptr, 10));
}

// Removes the tree without following links; a test may have taken the write
// or search permission away from a directory in it, so that comes back first.
void RemoveTree(const fs::path& directory) {
    std::error_code ignored;
    fs::permissions(directory, fs::perms::owner_all, fs::perm_options::add, ignored);
    for (const fs::directory_entry& entry : fs::directory_iterator(directory, ignored)) {
        if (entry.is_directory(ignored) && !entry.is_symlink(ignored)) RemoveTree(entry.path());
    }
    fs::remove_all(directory, ignored);
}

// The sandboxes left by runs that no longer exist.
void SweepDeadRuns(const std::string& base) {
    std::error_code ignored;
    for (const fs::directory_entry& entry : fs::directory_iterator(base, ignored)) {
        const pid_t owner = OwnerOf(entry.path().filename());
        if (owner <= 0 || owner == getpid() || kill(owner, 0) == 0 || errno != ESRCH) continue;
        if (IsOwnDirectory(entry.path())) RemoveTree(entry.path());
    }
}

}  // namespace

Sandbox::Sandbox() {
    const std::string base = BaseDirectory();
    SweepDeadRuns(base);
    std::string pattern = base + "/" + kPrefix + std::to_string(getpid()) + "-XXXXXX";
    if (mkdtemp(pattern.data()) == nullptr) Fail("mkdtemp failed below " + base);
    if (!IsOwnDirectory(pattern)) Fail(pattern + " is not a directory of our own");
    root_ = pattern;
    owner_ = getpid();
}

Sandbox::~Sandbox() {
    // Only the process that made it, and only while it still is what was made.
    if (getpid() != owner_ || !IsOwnDirectory(root_)) return;
    const fs::path root(root_);
    if (root.parent_path() != BaseDirectory() || OwnerOf(root.filename()) != owner_) return;
    RemoveTree(root);
}

std::string Sandbox::Path(const std::string& relative) const {
    if (relative.empty() || relative.front() == '/') Fail("not a relative path: \"" + relative + "\"");
    for (const fs::path& part : fs::path(relative)) {
        if (part == "..") Fail("leads out: \"" + relative + "\"");
    }
    return root_ + "/" + relative;
}
