#include "base/files/FileLocation.h"

#include <gtest/gtest.h>

#include "base/files/FileErrors.h"

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

}  // namespace
