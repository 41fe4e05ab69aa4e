#pragma once

// The directory the program writes its support files into. The program
// empties it first, so the client only ever hands over a directory that holds
// nothing of anyone's: by default a fresh one of its own, removed at exit.

#include <string>

class BaseDirectory {
public:
    // `given` empty: a fresh directory "zam-client-XXXXXX" under $TMPDIR (or
    // /tmp). Otherwise an absolute path that must not exist yet (it is made,
    // and removed at exit) or must be an empty directory (it is kept).
    // Throws ClientError.
    explicit BaseDirectory(const std::string& given);
    ~BaseDirectory();
    BaseDirectory(const BaseDirectory&) = delete;
    BaseDirectory& operator=(const BaseDirectory&) = delete;

    const std::string& Path() const { return path_; }
    // Removes it now if the client made it.
    void Remove();

private:
    std::string path_;
    bool owned_ = false;
};
