#pragma once

#include <sys/types.h>

#include <cstddef>

namespace UnixPlatform {

// read() and write() with a call interrupted by a signal retried; any other
// result, a short count or -1, is passed back unchanged.
ssize_t RetryingRead(int fd, void* buffer, std::size_t size);
ssize_t RetryingWrite(int fd, const void* buffer, std::size_t size);

}  // namespace UnixPlatform
