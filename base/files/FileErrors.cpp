#include "base/files/FileErrors.h"

#include <cerrno>

namespace UnixPlatform {

void ThrowFileIOError(int error, FileRole role) {
    switch (error) {
    case ENOENT:
        if (role == FileRole::Directory) throw DirectoryNotFoundError();
        throw FileNotFoundError();
    case ENOTDIR:
        throw DirectoryNotFoundError();
    case EACCES:
    case EPERM:
    case EROFS:
        throw FilePermissionError();
    case ENOSPC:
    case EDQUOT:
        throw FileDiskFullError();
    default:
        throw FileIOError();
    }
}

}  // namespace UnixPlatform
