#pragma once

// The failures of the file layer, one type per cause the callers tell apart.

#include "base/Exceptions.h"

// Any failure of a file operation without a more specific type below.
class FileIOError : public DebuggableException {};
// The file itself does not exist.
class FileNotFoundError : public FileIOError {};
// A directory that the path names or passes through does not exist, or is not
// a directory.
class DirectoryNotFoundError : public FileIOError {};
// Access refused: permissions, or a read-only file system.
class FilePermissionError : public FileIOError {};
// No room left: the disk or the user's quota is full.
class FileDiskFullError : public FileIOError {};
// An operation was given a location without a path.
class NoFileLocationError : public FileIOError {};

namespace UnixPlatform {

// What the failing call addressed; it decides what a missing path means.
enum class FileRole { File, Directory };

// Throws the FileIOError that matches an errno value: ENOENT is a missing file
// or a missing directory by role, ENOTDIR always a missing directory, EACCES,
// EPERM and EROFS a permission error, ENOSPC and EDQUOT a full disk.
[[noreturn]] void ThrowFileIOError(int error, FileRole role);

}  // namespace UnixPlatform
