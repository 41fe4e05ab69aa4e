#include "protocol/InitializationInfo.h"

#include <string>

#include <gtest/gtest.h>

namespace {

InitializationInfo Delivering(std::initializer_list<std::pair<const char*, const char*>> files) {
    InitializationInfo info;
    for (const auto& file : files) {
        info.supportFiles.push_back(FileTransfer{FileName(file.first), FileName(file.second), file.first});
    }
    return info;
}

std::string Found(NullOrConstRef<FileTransfer> file) {
    return file ? file->content : std::string("(none)");
}

TEST(SupportFileLookUps, OnlyTopLevelFilesCountAndCaseIsIgnored) {
    const InitializationInfo info = Delivering(
        {{"_brand.xlat", "sub"}, {"_BRAND.XLAT", ""}, {"_brand.xlat", ""}, {"_clientui.ico", ""}});
    EXPECT_EQ(Found(info.BrandTranslation()), "_BRAND.XLAT");
    EXPECT_EQ(Found(info.BrandIcon()), "_clientui.ico");
    EXPECT_EQ(Found(info.Dashboard()), "(none)");
}

TEST(SupportFileLookUps, LocalizedNamesPreferTheFullLocale) {
    struct Case {
        const char* what;
        InitializationInfo info;
        const char* full;
        const char* language;
        const char* brand;
        const char* general;
    };
    const Case cases[] = {
        {"both forms delivered", Delivering({{"_brandde.xlat", ""}, {"_brandde_DE.xlat", ""}, {"de.xlat", ""}, {"de_DE.xlat", ""}}),
         "de_DE", "de", "_brandde_DE.xlat", "de_DE.xlat"},
        {"only the language", Delivering({{"_brandde.xlat", ""}, {"DE.xlat", ""}}), "de_DE", "de", "_brandde.xlat",
         "DE.xlat"},
        {"no language part", Delivering({{"fr.xlat", ""}, {"_brandfr.xlat", ""}}), "fr", "", "_brandfr.xlat", "fr.xlat"},
        {"nothing for the locale", Delivering({{"_brand.xlat", ""}}), "de_DE", "de", "(none)", "(none)"},
        {"no locale at all", Delivering({{".xlat", ""}}), "", "", "(none)", "(none)"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const FileName full(c.full);
        const FileName language(c.language);
        EXPECT_EQ(Found(c.info.LocalizedBrandTranslation(full, language)), c.brand);
        EXPECT_EQ(Found(c.info.GeneralLocalization(full, language)), c.general);
    }
}

TEST(SupportFileLookUps, ALocalizedNameFollowsTheFileNameLengthRule) {
    const InitializationInfo info;
    const FileName longest(std::string(250, 'x'));  // 250 + ".xlat" is 255 bytes: allowed
    EXPECT_FALSE(info.GeneralLocalization(longest, FileName()));
    EXPECT_THROW(info.LocalizedBrandTranslation(longest, FileName()), IllegalFileNameLength);
}

TEST(SessionDirectory, IsAHiddenFolderPerUser) {
    EXPECT_EQ(UISessionDefaultDirectory(""), "/var/tmp/ZAM/ClientUI");
    EXPECT_EQ(UISessionDefaultDirectory("alice"), "/var/tmp/ZAM/ClientUI/.alice");
}

}  // namespace
