#pragma once

// Whole-file reading and writing and the directory operations the program
// needs for its working directory. Failures throw the FileIOError family
// (base/files/FileErrors.h); a location without a path throws
// NoFileLocationError.

#include <string>
#include <string_view>
#include <sys/types.h>

#include "base/files/FileLocation.h"

// The whole content of a file, as bytes.
std::string ReadWholeFile(const FileLocation& file);

// Creates or replaces a file with exactly these bytes. They are written to a
// new file in the same directory, flushed, and renamed over the target, so
// the target holds either its old content or the new, never a part. The new
// file gets the ordinary mode 0666 less the umask.
void WriteWholeFile(const FileLocation& file, std::string_view bytes);

// Whether the location names a directory (following symbolic links).
bool DirectoryExists(const FileLocation& directory);

// Empties a directory: removes every file and sub-folder inside it, however
// deep, and keeps the directory itself. A symbolic link inside is removed as
// a link; what it points to is never touched. The directory itself may be
// reached through a link.
void DeleteContents(const FileLocation& directory);

// Creates a directory and every missing parent. Missing parents get the mode
// 0777 less the umask; a newly made last component gets exactly `mode`, so
// 0700 keeps it private whatever the umask. A directory that already exists is
// left as it is, mode included. A path component that exists but is not a
// directory throws DirectoryNotFoundError.
void CreateDirectoryTree(const FileLocation& directory, mode_t mode = 0777);
