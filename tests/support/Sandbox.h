#pragma once

// The one place a test may write, delete or chmod files: a fresh directory
// "zam-test-<pid>-XXXXXX" under $TMPDIR (or /tmp), made by mkdtemp and
// checked to be a real directory owned by this user. Paths are handed out
// only below it. The destructor removes it with the standard library, never
// with the code under test, and only while it still is that directory.
//
// Creating one also removes the sandboxes of runs that have ended without
// cleaning up (killed ones): only those whose process id, written in the
// name, no longer runs, so a live run's sandboxes are never touched.

#include <sys/types.h>

#include <string>

class Sandbox {
public:
    // Fails the test (and throws) when no checked directory could be made.
    Sandbox();
    ~Sandbox();
    Sandbox(const Sandbox&) = delete;
    Sandbox& operator=(const Sandbox&) = delete;

    // The absolute path of the directory.
    const std::string& Root() const { return root_; }
    // Root()/relative. An absolute path, an empty one or a ".." component
    // fails the test (and throws) instead of leading out of the sandbox.
    std::string Path(const std::string& relative) const;

private:
    std::string root_;
    pid_t owner_ = -1;
};
