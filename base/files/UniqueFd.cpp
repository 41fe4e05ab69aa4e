#include "base/files/UniqueFd.h"

#include <cerrno>
#include <unistd.h>

namespace UnixPlatform {

void UniqueFd::Reset(int fd) noexcept {
    const int old = std::exchange(fd_, fd);
    if (old >= 0) ::close(old);
}

int UniqueFd::Close() noexcept {
    const int old = Release();
    if (old < 0) return 0;
    return ::close(old) == 0 ? 0 : errno;
}

}  // namespace UnixPlatform
