#include "base/files/FileOperations.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <dirent.h>
#include <functional>
#include <set>
#include <sys/stat.h>
#include <sys/wait.h>
#include <typeinfo>
#include <unistd.h>

#include "base/files/FileErrors.h"

namespace {

using UnixPlatform::FileRole;

TEST(FileErrors, ErrnoMapsToType) {
    struct Case {
        int error;
        FileRole role;
        const std::type_info& type;
    };
    const Case cases[] = {
        {ENOENT, FileRole::File, typeid(FileNotFoundError)},
        {ENOENT, FileRole::Directory, typeid(DirectoryNotFoundError)},
        {ENOTDIR, FileRole::File, typeid(DirectoryNotFoundError)},
        {EACCES, FileRole::File, typeid(FilePermissionError)},
        {EPERM, FileRole::Directory, typeid(FilePermissionError)},
        {EROFS, FileRole::File, typeid(FilePermissionError)},
        {ENOSPC, FileRole::File, typeid(FileDiskFullError)},
        {EDQUOT, FileRole::File, typeid(FileDiskFullError)},
        {EISDIR, FileRole::File, typeid(FileIOError)},
        {EIO, FileRole::Directory, typeid(FileIOError)},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.error);
        try {
            UnixPlatform::ThrowFileIOError(c.error, c.role);
        } catch (const FileIOError& e) {
            EXPECT_EQ(typeid(e), c.type);
        }
    }
}

// A fresh directory under /tmp per test, with a known umask.
class FileOperationsTest : public ::testing::Test {
protected:
    void SetUp() override {
        savedMask_ = ::umask(022);
        char pattern[] = "/tmp/zam-files-XXXXXX";
        ASSERT_NE(::mkdtemp(pattern), nullptr);
        root_ = MakeFileLocation(pattern);
    }
    void TearDown() override {
        if (root_.HasPath()) {
            ::chmod(root_.Path().c_str(), 0700);
            DeleteContents(root_);
            ::rmdir(root_.Path().c_str());
        }
        ::umask(savedMask_);
    }
    FileLocation At(const char* name) const { return root_ / FileName(name); }
    static mode_t Mode(const FileLocation& at) {
        struct stat info {};
        EXPECT_EQ(::lstat(at.Path().c_str(), &info), 0) << at.Path();
        return info.st_mode & 07777;
    }
    static std::set<std::string> List(const FileLocation& directory) {
        std::set<std::string> names;
        if (DIR* d = ::opendir(directory.Path().c_str())) {
            while (const dirent* e = ::readdir(d)) names.insert(e->d_name);
            ::closedir(d);
        }
        names.erase(".");
        names.erase("..");
        return names;
    }

    FileLocation root_;
    mode_t savedMask_ = 0;
};

TEST_F(FileOperationsTest, WriteCreatesAndReplacesWholeFiles) {
    const FileLocation file = At("_brand.xlat");
    const std::string binary("\0\x01\xFFtext\r\n", 9);
    WriteWholeFile(file, binary);
    EXPECT_EQ(ReadWholeFile(file), binary);
    EXPECT_EQ(Mode(file), 0644u);
    WriteWholeFile(file, "");
    EXPECT_EQ(ReadWholeFile(file), "");
    const std::string big(300 * 1024, 'z');  // several read buffers
    WriteWholeFile(file, big);
    EXPECT_EQ(ReadWholeFile(file), big);
    EXPECT_EQ(List(root_), std::set<std::string>{"_brand.xlat"});  // no temporary left behind
}

TEST_F(FileOperationsTest, FailuresHaveTheirTypes) {
    WriteWholeFile(At("plain"), "x");
    ASSERT_EQ(::mkdir(At("dir").Path().c_str(), 0755), 0);
    ASSERT_EQ(::mkdir((At("dir") / FileName("inner")).Path().c_str(), 0755), 0);

    struct Case {
        const char* name;
        std::function<void()> operation;
        const std::type_info& type;
    };
    const FileLocation underFile = At("plain") / FileName("x");
    const Case cases[] = {
        {"read missing file", [&] { ReadWholeFile(At("missing")); }, typeid(FileNotFoundError)},
        {"read a directory", [&] { ReadWholeFile(At("dir")); }, typeid(FileIOError)},
        {"read below a file", [&] { ReadWholeFile(underFile); }, typeid(DirectoryNotFoundError)},
        {"write into missing directory", [&] { WriteWholeFile(At("missing") / FileName("f"), "x"); },
         typeid(DirectoryNotFoundError)},
        {"write below a file", [&] { WriteWholeFile(underFile, "x"); }, typeid(DirectoryNotFoundError)},
        {"write over a directory", [&] { WriteWholeFile(At("dir"), "x"); }, typeid(FileIOError)},
        {"empty missing directory", [&] { DeleteContents(At("missing")); }, typeid(DirectoryNotFoundError)},
        {"empty a file", [&] { DeleteContents(At("plain")); }, typeid(DirectoryNotFoundError)},
        {"tree through a file", [&] { CreateDirectoryTree(underFile / FileName("y")); },
         typeid(DirectoryNotFoundError)},
        {"tree onto a file", [&] { CreateDirectoryTree(At("plain")); }, typeid(DirectoryNotFoundError)},
        {"no path", [&] { ReadWholeFile(FileLocation()); }, typeid(NoFileLocationError)},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        try {
            c.operation();
            ADD_FAILURE() << "no error";
        } catch (const FileIOError& e) {
            EXPECT_EQ(typeid(e), c.type);
        }
    }
    // The failed writes left nothing behind, and the directory is untouched.
    EXPECT_EQ(List(root_), (std::set<std::string>{"dir", "plain"}));
    EXPECT_EQ(List(At("dir")), std::set<std::string>{"inner"});
}

// Runs the check as an ordinary user: root passes every permission check, so
// when the tests run as root the check runs in a child that has given it up.
bool AsOrdinaryUser(const std::function<bool()>& check) {
    if (::geteuid() != 0) return check();
    const pid_t child = ::fork();
    if (child == 0) {
        const bool ok = ::setgid(65534) == 0 && ::setuid(65534) == 0 && check();
        ::_exit(ok ? 0 : 1);
    }
    int status = 0;
    return child > 0 && ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST_F(FileOperationsTest, WriteIntoReadOnlyDirectoryIsAPermissionError) {
    WriteWholeFile(At("old"), "old content");
    ASSERT_EQ(::chmod(At("old").Path().c_str(), 0666), 0);
    ASSERT_EQ(::chmod(root_.Path().c_str(), 0555), 0);
    EXPECT_TRUE(AsOrdinaryUser([&] {
        try {
            WriteWholeFile(At("old"), "new");
        } catch (const FilePermissionError&) {
            return ReadWholeFile(At("old")) == "old content";
        }
        return false;
    }));
}

TEST_F(FileOperationsTest, DeleteContentsEmptiesTreeButNotLinkTargets) {
    const FileLocation base = At("base");
    const FileLocation outside = At("outside");
    CreateDirectoryTree(base / FileName("a") / FileName("b") / FileName("c"));
    CreateDirectoryTree(outside);
    WriteWholeFile(outside / FileName("keep"), "precious");
    WriteWholeFile(base / FileName("top"), "1");
    WriteWholeFile(base / FileName("a") / FileName("b") / FileName("deep"), "2");
    ASSERT_EQ(::symlink(outside.Path().c_str(), (base / FileName("a") / FileName("toDir")).Path().c_str()), 0);
    ASSERT_EQ(::symlink((outside / FileName("keep")).Path().c_str(), (base / FileName("toFile")).Path().c_str()), 0);
    ASSERT_EQ(::symlink("/nonexistent", (base / FileName("dangling")).Path().c_str()), 0);

    DeleteContents(base);

    EXPECT_TRUE(DirectoryExists(base));
    EXPECT_TRUE(List(base).empty());
    EXPECT_EQ(ReadWholeFile(outside / FileName("keep")), "precious");
    DeleteContents(base);  // an empty directory is fine too
}

TEST_F(FileOperationsTest, CreateDirectoryTreeModes) {
    const FileLocation parent = At("p");
    const FileLocation leaf = parent / FileName("q") / FileName("leaf");
    CreateDirectoryTree(leaf, 0700);
    EXPECT_EQ(Mode(parent), 0755u);
    EXPECT_EQ(Mode(parent / FileName("q")), 0755u);
    EXPECT_EQ(Mode(leaf), 0700u);

    // An existing directory keeps its mode.
    ASSERT_EQ(::chmod(leaf.Path().c_str(), 0751), 0);
    CreateDirectoryTree(leaf, 0700);
    EXPECT_EQ(Mode(leaf), 0751u);

    // The caller's mode is exact: the umask does not narrow it.
    ::umask(077);
    CreateDirectoryTree(At("shared"), 0755);
    EXPECT_EQ(Mode(At("shared")), 0755u);
}

}  // namespace
