#include "base/files/FileOperations.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <set>
#include <sys/stat.h>
#include <typeinfo>
#include <unistd.h>

#include "base/files/FileErrors.h"
#include "base/files/FileLocation.h"
#include "tests/support/Sandbox.h"

namespace {

TEST(FileName, ValidationTable) {
    enum Outcome { Ok, Illegal, TooLong };
    const std::pair<std::string, Outcome> cases[] = {
        {"", Ok}, {"_brand.xlat", Ok}, {"...", Ok}, {".hidden", Ok}, {std::string(255, 'n'), Ok},
        {std::string(256, 'n'), TooLong}, {"a/b", Illegal}, {"/", Illegal}, {".", Illegal},
        {"..", Illegal}, {std::string("nul\0name", 8), Illegal},
    };
    for (const auto& [text, outcome] : cases) {
        SCOPED_TRACE(text.substr(0, 20) + " (" + std::to_string(text.size()) + " bytes)");
        switch (outcome) {
        case Ok: EXPECT_EQ(FileName(text).Text(), text); break;
        case Illegal: EXPECT_THROW(FileName{text}, IllegalFileName); break;
        case TooLong: EXPECT_THROW(FileName{text}, IllegalFileNameLength); break;
        }
    }
}

TEST(FileLocation, MakeKeepsDotsAndJoinAddsOneComponent) {
    const std::pair<const char*, const char*> cases[] = {
        {"", ""}, {"/", "/"}, {"//", "/"}, {"/var//tmp///ZAM/", "/var/tmp/ZAM"}, {"/a/./b/../c", "/a/./b/../c"},
    };
    for (const auto& [text, path] : cases) {
        SCOPED_TRACE(text);
        EXPECT_EQ(MakeFileLocation(text).Path(), path);
    }
    for (std::string_view bad : {std::string_view("relative/dir"), std::string_view("/nul\0", 5)}) {
        EXPECT_THROW(MakeFileLocation(bad), IllegalFileLocation);
    }
    const FileName name("_brand.xlat");
    EXPECT_EQ((MakeFileLocation("/var/tmp/") / name).Path(), "/var/tmp/_brand.xlat");
    EXPECT_EQ((MakeFileLocation("/") / name).Path(), "/_brand.xlat");
    EXPECT_THROW(MakeFileLocation("/tmp") / FileName(), IllegalFileName);
    EXPECT_THROW(FileLocation() / name, NoFileLocationError);
}

// A sandbox per test, with the umask pinned to 022.
class FileOperationsTest : public ::testing::Test {
protected:
    void SetUp() override { savedMask_ = ::umask(022); }
    void TearDown() override { ::umask(savedMask_); }
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

    const Sandbox sandbox_;
    const FileLocation root_ = MakeFileLocation(sandbox_.Root());
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

TEST_F(FileOperationsTest, WriteIntoReadOnlyDirectoryIsAPermissionError) {
    // Root passes every permission check; the test command runs the tests as an ordinary user.
    if (::geteuid() == 0) GTEST_SKIP() << "root passes every permission check";
    WriteWholeFile(At("old"), "old content");
    ASSERT_EQ(::chmod(root_.Path().c_str(), 0555), 0);
    EXPECT_THROW(WriteWholeFile(At("old"), "new"), FilePermissionError);
    EXPECT_EQ(ReadWholeFile(At("old")), "old content");
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
