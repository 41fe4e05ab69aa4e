#include "pipe/UnixIO.h"

#include <unistd.h>

#include <cerrno>

namespace UnixPlatform {

ssize_t RetryingRead(int fd, void* buffer, std::size_t size) {
    ssize_t result;
    do {
        result = read(fd, buffer, size);
    } while (result < 0 && errno == EINTR);
    return result;
}

ssize_t RetryingWrite(int fd, const void* buffer, std::size_t size) {
    ssize_t result;
    do {
        result = write(fd, buffer, size);
    } while (result < 0 && errno == EINTR);
    return result;
}

}  // namespace UnixPlatform
