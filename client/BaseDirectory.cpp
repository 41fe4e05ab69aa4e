#include "client/BaseDirectory.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <vector>

#include "client/UIProcess.h"

namespace fs = std::filesystem;

BaseDirectory::BaseDirectory(const std::string& given) {
    if (given.empty()) {
        const char* tmp = std::getenv("TMPDIR");
        std::string pattern = std::string(tmp != nullptr && tmp[0] == '/' ? tmp : "/tmp") + "/zam-client-XXXXXX";
        std::vector<char> buffer(pattern.begin(), pattern.end());
        buffer.push_back('\0');
        if (mkdtemp(buffer.data()) == nullptr) {
            throw ClientError{"cannot make a directory from " + pattern + ": " + std::strerror(errno)};
        }
        path_ = buffer.data();
        owned_ = true;
        return;
    }
    if (given[0] != '/') throw ClientError{"the base directory must be an absolute path: " + given};
    path_ = given;
    if (mkdir(given.c_str(), 0700) == 0) {
        owned_ = true;
        return;
    }
    if (errno != EEXIST) throw ClientError{"cannot make " + given + ": " + std::strerror(errno)};
    std::error_code error;
    // A symbolic link is refused too: the program would empty what it points to.
    if (!fs::is_directory(fs::symlink_status(given, error))) {
        throw ClientError{given + " exists and is not a directory"};
    }
    if (!fs::is_empty(given, error) || error) {
        throw ClientError{"refusing " + given +
                          ": it is not empty, and the program deletes everything in its base directory"};
    }
}

BaseDirectory::~BaseDirectory() { Remove(); }

void BaseDirectory::Remove() {
    if (!owned_) return;
    owned_ = false;
    std::error_code error;
    // Only ever a directory this object made itself.
    fs::remove_all(path_, error);
}
