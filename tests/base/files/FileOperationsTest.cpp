#include "base/files/FileOperations.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <set>
#include <sys/stat.h>
#include <sys/wait.h>
#include <typeinfo>
#include <unistd.h>

#include "base/files/FileErrors.h"

namespace {

// A fresh directory under /tmp per test, with the umask pinned to 022.
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
    static unsigned Mode(const FileLocation& at) {
        return static_cast<unsigned>(std::filesystem::symlink_status(at.Path()).permissions());
    }
    static std::set<std::string> List(const FileLocation& directory) {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(directory.Path())) {
            names.insert(entry.path().filename());
        }
        return names;
    }

    FileLocation root_;
    mode_t savedMask_ = 0;
};

TEST_F(FileOperationsTest, WriteCreatesAndReplacesWholeFiles) {
    const FileLocation file = At("_brand.xlat");
    for (const std::string& bytes : {std::string("\0\x01\xFFtext\r\n", 9), std::string(), std::string(300000, 'z')}) {
        WriteWholeFile(file, bytes);
        EXPECT_EQ(ReadWholeFile(file), bytes);
    }
    EXPECT_EQ(Mode(file), 0644u);
    EXPECT_EQ(List(root_), std::set<std::string>{"_brand.xlat"});  // no temporary left behind
}

TEST_F(FileOperationsTest, FailuresHaveTheirTypes) {
    WriteWholeFile(At("plain"), "x");
    CreateDirectoryTree(At("dir") / FileName("inner"));
    const FileLocation underFile = At("plain") / FileName("x");
    const std::tuple<const char*, std::function<void()>, const std::type_info&> cases[] = {
        {"read missing", [&] { ReadWholeFile(At("missing")); }, typeid(FileNotFoundError)},
        {"read directory", [&] { ReadWholeFile(At("dir")); }, typeid(FileIOError)},
        {"write in missing", [&] { WriteWholeFile(At("missing") / FileName("f"), "x"); }, typeid(DirectoryNotFoundError)},
        {"write below file", [&] { WriteWholeFile(underFile, "x"); }, typeid(DirectoryNotFoundError)},
        {"write over dir", [&] { WriteWholeFile(At("dir"), "x"); }, typeid(FileIOError)},
        {"empty missing", [&] { DeleteContents(At("missing")); }, typeid(DirectoryNotFoundError)},
        {"empty a file", [&] { DeleteContents(At("plain")); }, typeid(DirectoryNotFoundError)},
        {"tree onto file", [&] { CreateDirectoryTree(At("plain")); }, typeid(DirectoryNotFoundError)},
        {"no path", [&] { ReadWholeFile(FileLocation()); }, typeid(NoFileLocationError)},
    };
    for (const auto& [name, operation, type] : cases) {
        SCOPED_TRACE(name);
        try {
            operation();
            ADD_FAILURE() << "no error";
        } catch (const FileIOError& e) {
            EXPECT_EQ(typeid(e), type);
        }
    }
    // The failed writes left nothing behind, and the directory is untouched.
    EXPECT_EQ(List(root_), (std::set<std::string>{"dir", "plain"}));
    EXPECT_EQ(List(At("dir")), std::set<std::string>{"inner"});
}

// Root passes every permission check, so as root the check runs in a child
// that has given root up.
bool AsOrdinaryUser(const std::function<bool()>& check) {
    if (::geteuid() != 0) return check();
    const pid_t child = ::fork();
    if (child == 0) ::_exit(::setgid(65534) == 0 && ::setuid(65534) == 0 && check() ? 0 : 1);
    int status = 0;
    return child > 0 && ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST_F(FileOperationsTest, WriteIntoReadOnlyDirectoryIsAPermissionError) {
    WriteWholeFile(At("old"), "old content");
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
    const FileLocation base = At("base"), outside = At("outside"), a = base / FileName("a");
    CreateDirectoryTree(a / FileName("b") / FileName("c"));
    CreateDirectoryTree(outside);
    WriteWholeFile(outside / FileName("keep"), "precious");
    WriteWholeFile(base / FileName("top"), "1");
    WriteWholeFile(a / FileName("b") / FileName("deep"), "2");
    ASSERT_EQ(::symlink(outside.Path().c_str(), (a / FileName("toDir")).Path().c_str()), 0);
    ASSERT_EQ(::symlink((outside / FileName("keep")).Path().c_str(), (base / FileName("toFile")).Path().c_str()), 0);
    ASSERT_EQ(::symlink("/nonexistent", (base / FileName("dangling")).Path().c_str()), 0);

    DeleteContents(base);
    EXPECT_TRUE(DirectoryExists(base));
    EXPECT_TRUE(List(base).empty());
    EXPECT_EQ(ReadWholeFile(outside / FileName("keep")), "precious");
}

TEST_F(FileOperationsTest, CreateDirectoryTreeModes) {
    const FileLocation leaf = At("p") / FileName("q") / FileName("leaf");
    CreateDirectoryTree(leaf, 0700);
    EXPECT_EQ(Mode(At("p")), 0755u);
    EXPECT_EQ(Mode(At("p") / FileName("q")), 0755u);
    EXPECT_EQ(Mode(leaf), 0700u);
    ASSERT_EQ(::chmod(leaf.Path().c_str(), 0751), 0);
    CreateDirectoryTree(leaf, 0700);  // an existing directory keeps its mode
    EXPECT_EQ(Mode(leaf), 0751u);
    ::umask(077);  // the caller's mode is exact: the umask does not narrow it
    CreateDirectoryTree(At("shared"), 0755);
    EXPECT_EQ(Mode(At("shared")), 0755u);
}

}  // namespace
