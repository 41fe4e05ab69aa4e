#include "base/files/FileOperations.h"

#include <atomic>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "base/files/FileErrors.h"
#include "base/files/UniqueFd.h"
#include "base/unicode/Numerals.h"

using UnixPlatform::FileRole;
using UnixPlatform::ThrowFileIOError;
using UnixPlatform::UniqueFd;

namespace {

const std::string& CheckedPath(const FileLocation& location) {
    if (!location.HasPath()) throw NoFileLocationError();
    return location.Path();
}

// The system calls that can be interrupted by a signal, retried on EINTR.
template <class Call>
auto RetryOnInterrupt(Call call) {
    for (;;) {
        const auto result = call();
        if (result >= 0 || errno != EINTR) return result;
    }
}

UniqueFd OpenAt(int directory, const char* path, int flags, FileRole role, mode_t mode = 0) {
    const int fd = RetryOnInterrupt([&] { return ::openat(directory, path, flags | O_CLOEXEC, mode); });
    if (fd < 0) ThrowFileIOError(errno, role);
    return UniqueFd(fd);
}

void WriteAll(int fd, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = RetryOnInterrupt([&] { return ::write(fd, bytes.data(), bytes.size()); });
        if (written < 0) ThrowFileIOError(errno, FileRole::File);
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

// Splits an absolute, normalised path into its directory and last component.
std::pair<std::string, std::string> SplitLast(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return {slash == 0 ? std::string("/") : path.substr(0, slash), path.substr(slash + 1)};
}

// A fresh name for the temporary file: short (a 255-byte target name could
// not take a suffix), hidden, and unlikely to be taken; O_EXCL settles the rest.
std::string TemporaryName() {
    static std::atomic<unsigned long> counter{0};
    std::string name = ".zam-write-";
    name += MakeAsciiDecimalNumeral64(static_cast<std::uint64_t>(::getpid())).View();
    name += '-';
    name += MakeAsciiDecimalNumeral64(counter.fetch_add(1)).View();
    return name;
}

// Removes the temporary file unless the write went through.
class TemporaryFile {
public:
    TemporaryFile(int directory, std::string name) : directory_(directory), name_(std::move(name)) {}
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        if (!kept_) ::unlinkat(directory_, name_.c_str(), 0);
    }
    void Keep() noexcept { kept_ = true; }

private:
    int directory_;
    std::string name_;
    bool kept_ = false;
};

void EmptyDirectory(int directoryFd);

// Removes one entry of an open directory; a sub-folder is emptied first. The
// entry is opened with O_NOFOLLOW, so if it is swapped for a symbolic link
// between the look and the open, the open fails instead of leaving the tree.
void RemoveEntry(int directoryFd, const char* name) {
    struct stat info;
    if (::fstatat(directoryFd, name, &info, AT_SYMLINK_NOFOLLOW) != 0) {
        if (errno == ENOENT) return;  // already gone
        ThrowFileIOError(errno, FileRole::File);
    }
    if (S_ISDIR(info.st_mode)) {
        const UniqueFd sub = OpenAt(directoryFd, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW, FileRole::Directory);
        EmptyDirectory(sub.Get());
        if (::unlinkat(directoryFd, name, AT_REMOVEDIR) != 0 && errno != ENOENT) {
            ThrowFileIOError(errno, FileRole::Directory);
        }
    } else if (::unlinkat(directoryFd, name, 0) != 0 && errno != ENOENT) {
        ThrowFileIOError(errno, FileRole::File);
    }
}

void EmptyDirectory(int directoryFd) {
    // The names are read first and removed after, since removing entries while
    // the listing is still open may make it skip some.
    std::vector<std::string> names;
    {
        const int listingFd = ::dup(directoryFd);
        if (listingFd < 0) ThrowFileIOError(errno, FileRole::Directory);
        DIR* listing = ::fdopendir(listingFd);
        if (listing == nullptr) {
            const int error = errno;
            ::close(listingFd);
            ThrowFileIOError(error, FileRole::Directory);
        }
        errno = 0;
        while (const dirent* entry = ::readdir(listing)) {
            const std::string_view name = entry->d_name;
            if (name != "." && name != "..") names.emplace_back(name);
            errno = 0;
        }
        const int error = errno;
        ::closedir(listing);
        if (error != 0) ThrowFileIOError(error, FileRole::Directory);
    }
    for (const std::string& name : names) RemoveEntry(directoryFd, name.c_str());
}

}  // namespace

std::string ReadWholeFile(const FileLocation& file) {
    const UniqueFd fd = OpenAt(AT_FDCWD, CheckedPath(file).c_str(), O_RDONLY, FileRole::File);
    std::string content;
    struct stat info;
    if (::fstat(fd.Get(), &info) == 0 && S_ISREG(info.st_mode) && info.st_size > 0) {
        content.reserve(static_cast<std::size_t>(info.st_size));
    }
    char buffer[64 * 1024];
    for (;;) {
        const ssize_t got = RetryOnInterrupt([&] { return ::read(fd.Get(), buffer, sizeof buffer); });
        if (got < 0) ThrowFileIOError(errno, FileRole::File);
        if (got == 0) return content;
        content.append(buffer, static_cast<std::size_t>(got));
    }
}

void WriteWholeFile(const FileLocation& file, std::string_view bytes) {
    const auto [directoryPath, name] = SplitLast(CheckedPath(file));
    if (name.empty()) ThrowFileIOError(EISDIR, FileRole::File);  // the root
    const UniqueFd directory =
        OpenAt(AT_FDCWD, directoryPath.c_str(), O_RDONLY | O_DIRECTORY, FileRole::Directory);

    std::string temporaryName;
    UniqueFd fd;
    for (int attempt = 0; !fd.Valid(); ++attempt) {
        temporaryName = TemporaryName();
        const int opened = RetryOnInterrupt([&] {
            return ::openat(directory.Get(), temporaryName.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        });
        if (opened >= 0) {
            fd.Reset(opened);
        } else if (errno != EEXIST || attempt == 100) {
            ThrowFileIOError(errno, FileRole::File);
        }
    }
    TemporaryFile guard(directory.Get(), temporaryName);

    WriteAll(fd.Get(), bytes);
    // A full disk may only show when the data is flushed or the file closed.
    if (RetryOnInterrupt([&] { return ::fsync(fd.Get()); }) != 0) ThrowFileIOError(errno, FileRole::File);
    if (const int error = fd.Close(); error != 0 && error != EINTR) ThrowFileIOError(error, FileRole::File);

    if (::renameat(directory.Get(), temporaryName.c_str(), directory.Get(), name.c_str()) != 0) {
        ThrowFileIOError(errno, FileRole::File);
    }
    guard.Keep();
}

bool DirectoryExists(const FileLocation& directory) {
    struct stat info;
    return ::stat(CheckedPath(directory).c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

void DeleteContents(const FileLocation& directory) {
    const UniqueFd fd =
        OpenAt(AT_FDCWD, CheckedPath(directory).c_str(), O_RDONLY | O_DIRECTORY, FileRole::Directory);
    EmptyDirectory(fd.Get());
}

void CreateDirectoryTree(const FileLocation& directory, mode_t mode) {
    const std::string& path = CheckedPath(directory);
    // Walk down from the root, making each missing component in turn.
    for (std::size_t end = path.find('/', 1);; end = path.find('/', end + 1)) {
        const bool last = end == std::string::npos;
        const std::string prefix = last ? path : path.substr(0, end);
        if (::mkdir(prefix.c_str(), last ? mode : 0777) == 0) {
            // mkdir narrows by the umask; the caller asked for this mode exactly.
            if (last && ::chmod(prefix.c_str(), mode) != 0) ThrowFileIOError(errno, FileRole::Directory);
        } else if (errno == EEXIST) {
            struct stat info;
            if (::stat(prefix.c_str(), &info) != 0) ThrowFileIOError(errno, FileRole::Directory);
            if (!S_ISDIR(info.st_mode)) ThrowFileIOError(ENOTDIR, FileRole::Directory);
        } else {
            ThrowFileIOError(errno, FileRole::Directory);
        }
        if (last) return;
    }
}
