#include "base/files/FileLocation.h"

#include <gtest/gtest.h>

#include "base/files/FileErrors.h"

namespace {

enum class Outcome { Ok, Illegal, TooLong };

struct NameCase {
    std::string text;
    Outcome outcome;
};

TEST(FileName, ValidationTable) {
    const NameCase cases[] = {
        {"", Outcome::Ok},
        {"_brand.xlat", Outcome::Ok},
        {"...", Outcome::Ok},
        {".hidden", Outcome::Ok},
        {std::string(255, 'n'), Outcome::Ok},
        {std::string(256, 'n'), Outcome::TooLong},
        {"a/b", Outcome::Illegal},
        {"/", Outcome::Illegal},
        {"trailing/", Outcome::Illegal},
        {".", Outcome::Illegal},
        {"..", Outcome::Illegal},
        {std::string("nul\0name", 8), Outcome::Illegal},
    };
    for (const NameCase& c : cases) {
        SCOPED_TRACE(c.text.substr(0, 20) + " (" + std::to_string(c.text.size()) + " bytes)");
        switch (c.outcome) {
        case Outcome::Ok: EXPECT_EQ(FileName(c.text).Text(), c.text); break;
        case Outcome::Illegal: EXPECT_THROW(FileName{c.text}, IllegalFileName); break;
        case Outcome::TooLong: EXPECT_THROW(FileName{c.text}, IllegalFileNameLength); break;
        }
    }
}

TEST(FileLocation, MakeNormalisesSlashesOnly) {
    struct Case {
        const char* text;
        const char* path;
    };
    const Case cases[] = {
        {"", ""},
        {"/", "/"},
        {"//", "/"},
        {"/var/tmp/ZAM/ClientUI", "/var/tmp/ZAM/ClientUI"},
        {"/var//tmp///ZAM/", "/var/tmp/ZAM"},
        {"/a/./b/../c", "/a/./b/../c"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(MakeFileLocation(c.text).Path(), c.path);
    }
    EXPECT_FALSE(MakeFileLocation("").HasPath());
    for (std::string_view bad : {std::string_view("relative/dir"), std::string_view("./x"),
                                 std::string_view("/nul\0", 5)}) {
        EXPECT_THROW(MakeFileLocation(bad), IllegalFileLocation);
    }
}

TEST(FileLocation, JoinAddsOneComponent) {
    const FileName name("_brand.xlat");
    EXPECT_EQ((MakeFileLocation("/var/tmp/") / name).Path(), "/var/tmp/_brand.xlat");
    EXPECT_EQ((MakeFileLocation("/") / name).Path(), "/_brand.xlat");
    EXPECT_THROW(MakeFileLocation("/tmp") / FileName(), IllegalFileName);
    EXPECT_THROW(FileLocation() / name, NoFileLocationError);
}

}  // namespace
