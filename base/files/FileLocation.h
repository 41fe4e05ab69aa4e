#pragma once

// Where a file or directory is: an absolute path in the locale's encoding.

#include <string>
#include <string_view>
#include <utility>

#include "base/Exceptions.h"
#include "base/files/FileName.h"

// Text that cannot be a location: not absolute, or holding a NUL byte.
class IllegalFileLocation : public DebuggableException {};

// An absolute path, or no path at all (the default, written as empty text).
// The path is kept as given apart from doubled and trailing slashes; "." and
// ".." components are left to the system, which alone knows the symbolic
// links they pass through.
class FileLocation {
public:
    FileLocation() = default;

    bool HasPath() const noexcept { return !path_.empty(); }
    // The path, or empty text for a location without one.
    const std::string& Path() const noexcept { return path_; }

    // The file or directory called `name` inside this directory. Throws
    // NoFileLocationError when this location has no path and IllegalFileName
    // for the empty name.
    FileLocation Child(const FileName& name) const;

    friend bool operator==(const FileLocation& a, const FileLocation& b) noexcept { return a.path_ == b.path_; }
    friend bool operator!=(const FileLocation& a, const FileLocation& b) noexcept { return a.path_ != b.path_; }

private:
    friend FileLocation MakeFileLocation(std::string_view text);
    explicit FileLocation(std::string path) : path_(std::move(path)) {}

    std::string path_;
};

// Empty text gives a location without a path; other text must be an absolute
// path, else IllegalFileLocation is thrown.
FileLocation MakeFileLocation(std::string_view text);

inline FileLocation operator/(const FileLocation& directory, const FileName& name) { return directory.Child(name); }
