#include "app/Initialization.h"

#include <gtest/gtest.h>

#include <chrono>
#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

#include "app/Settings.h"
#include "base/files/FileErrors.h"
#include "base/files/FileOperations.h"
#include "base/time/TimeErrors.h"
#include "base/time/TimeObject.h"
#include "base/unicode/Base64.h"
#include "tests/support/ForkedCheck.h"
#include "tests/support/ProgramSettings.h"
#include "tests/support/Sandbox.h"
#include "tests/support/TestData.h"
#include "text/FormatOverrides.h"

namespace {

namespace fs = std::filesystem;

struct Delivered { const char *name, *subFolder, *bytes; };

InitializationInfo Delivering(std::initializer_list<Delivered> files, bool useLocale = true) {
    InitializationInfo info;
    for (const Delivered& file : files) {
        info.supportFiles.push_back(
            FileTransfer{FileName(file.name), FileName(file.subFolder), Base64Encoder::Encode(file.bytes).Str()});
    }
    info.settings.useLocale = useLocale;
    return info;
}

std::string Translated(const char* key) { return std::string(GlobalFormatOverrideContext().Override(key, "-").View()); }

TEST(CutLocaleName, KeepsTheNameBeforeTheCodeSetAndItsLanguage) {
    struct Case { const char* name; bool international; const char *full, *language; };
    const Case cases[] = {
        {"de_DE.UTF-8", true, "de_DE", "de"}, {"de_DE", true, "de_DE", "de"}, {"fr", true, "fr", ""},
        {"C.UTF-8", true, "C", ""},           {"sr_RS@latin", true, "sr_RS@latin", "sr"},
        {"C", false, "", ""},                 {"POSIX", false, "", ""},       {"", false, "", ""},
        {nullptr, false, "", ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name ? c.name : "(null)");
        const std::optional<LocaleNames> names = CutLocaleName(c.name);
        ASSERT_EQ(names.has_value(), c.international);
        if (names) {
            EXPECT_EQ(names->full, c.full);
            EXPECT_EQ(names->language, c.language);
        }
    }
}

// Which files a locale picks, and their order, is checked by loading them
// (LoadsTheFilesOfTheRealLocale); here the locales that make no file name.
TEST(ChooseTranslationFiles, RefusesALocaleThatMakesNoFileName) {
    EXPECT_THROW(ChooseTranslationFiles(Delivering({}), "de/DE.UTF-8"), IllegalFileName);
    // 250 bytes fit as "<full>.xlat" but not as "_brand<full>.xlat".
    EXPECT_THROW(ChooseTranslationFiles(Delivering({}), std::string(250, 'x').c_str()), IllegalFileNameLength);
}

// Each test gets its own sandbox, the umask 022 and reset settings.
class ApplyInitializationInfoTest : public ::testing::Test {
protected:
    void SetUp() override {
        savedMask_ = ::umask(022);
        ResetProgramSettings();
    }
    void TearDown() override {
        ResetProgramSettings();
        ::umask(savedMask_);
    }
    InitializationInfo In(const char* relative, InitializationInfo info) const {
        info.baseDirectory = At(relative);
        return info;
    }
    FileLocation At(const char* relative) const { return MakeFileLocation(sandbox_.Path(relative)); }
    std::set<std::string> List(const char* relative) const {
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator(sandbox_.Path(relative))) names.insert(entry.path().filename());
        return names;
    }
    unsigned Mode(const char* relative) const { return unsigned(fs::status(sandbox_.Path(relative)).permissions()); }
    std::string Path(const char* relative) const { return sandbox_.Path(relative); }

    const Sandbox sandbox_;
    mode_t savedMask_ = 0;
};

TEST_F(ApplyInitializationInfoTest, ReplacesTheContentsWithoutFollowingLinksAndTakesOverTheSettings) {
    fs::create_directories(Path("base/old/deeper"));
    fs::create_directories(Path("outside/kept"));
    WriteWholeFile(At("base/stale.html"), "old");
    WriteWholeFile(At("outside/precious"), "precious");
    // Links to things outside the base directory: emptying removes the links, never their targets.
    fs::create_directory_symlink(Path("outside"), Path("base/old/toDir"));
    fs::create_directory_symlink(Path("outside"), Path("base/toDir"));
    fs::create_symlink(Path("outside/precious"), Path("base/page.html"));
    ::chmod((Path("base")).c_str(), 0755);
    InitializationInfo info = In("base", Delivering({{"_brand.xlat", "", "apply: brand\tfrom the brand file"},
                                                      {"page.html", "", "top"},
                                                      {"page.html", "pages", "from a sub-folder"},
                                                      {"icon.ico", "", "\x01\x02"}},
                                                     false));
    const Instant remindAt(1700000000 * kMicrosecondsPerSecond);
    info.settings.remindTime = TimeObject(remindAt, TimeZone(3600));
    info.settings.remindInterval = TimeInterval(900 * kMicrosecondsPerSecond);
    info.settings.allowSnooze = false;

    ApplyInitializationInfo(info);
    EXPECT_EQ(List("base"), (std::set<std::string>{"_brand.xlat", "icon.ico", "page.html"}));
    EXPECT_EQ(List("outside"), (std::set<std::string>{"kept", "precious"}));
    EXPECT_EQ(ReadWholeFile(At("outside/precious")), "precious");
    // The sub-folder is ignored, so its file replaced the top-level one.
    EXPECT_EQ(ReadWholeFile(At("base/page.html")), "from a sub-folder");
    EXPECT_EQ(ReadWholeFile(At("base/icon.ico")), "\x01\x02");
    EXPECT_EQ(Mode("base"), 0755u);
    EXPECT_EQ(Translated("apply: brand"), "from the brand file");
    EXPECT_EQ(m_baseDirectory, info.baseDirectory);
    EXPECT_EQ(m_postponedTo, remindAt);
    EXPECT_EQ(m_remindInterval, info.settings.remindInterval);
    EXPECT_FALSE(m_snoozable);
    EXPECT_FALSE(international);
    EXPECT_TRUE(initialized);

    // A support file replaces a link planted at its path instead of writing through it.
    fs::create_symlink(Path("outside/precious"), Path("base/planted"));
    WriteWholeFile(info.baseDirectory / FileName("planted"), "delivered");
    EXPECT_FALSE(fs::is_symlink(Path("base/planted")));
    EXPECT_EQ(ReadWholeFile(At("outside/precious")), "precious");
}

TEST_F(ApplyInitializationInfoTest, CreatesOnlyTheBaseDirectoryItselfPrivate) {
    ApplyInitializationInfo(In("a/b/base", Delivering({}, false)));
    EXPECT_EQ(Mode("a"), 0755u);
    EXPECT_EQ(Mode("a/b"), 0755u);
    EXPECT_EQ(Mode("a/b/base"), 0700u);
    EXPECT_EQ(m_postponedTo, Instant());  // no RemindTime: the dialog may appear at once
    EXPECT_TRUE(initialized);
}

// Only the check itself sees these paths: handing them to ApplyInitializationInfo
// would empty the machine the moment the check regressed.
TEST_F(ApplyInitializationInfoTest, RefusesABaseDirectoryThatWouldWipeTooMuch) {
    fs::create_directory_symlink("/", Path("root-link"));
    const std::string paths[] = {"", "/", "//", "/tmp/..", Path("root-link"), Path("root-link/.")};
    for (const std::string& path : paths) {
        SCOPED_TRACE(path);
        EXPECT_THROW(RefuseUnsafeBaseDirectory(MakeFileLocation(path)), UnsafeBaseDirectory);
    }
    EXPECT_NO_THROW(RefuseUnsafeBaseDirectory(MakeFileLocation(Path("missing/base"))));
    EXPECT_THROW(MakeFileLocation("relative/base"), IllegalFileLocation);  // never reaches a record
    // No base directory at all reaches the initialisation itself, but from a
    // working directory inside the sandbox, in a child: were it taken for the
    // working directory, only the sandbox would be emptied.
    fs::create_directories(Path("cwd/kept"));
    EXPECT_EQ(RunInForkedChild(
                  [&] {
                      if (::chdir(Path("cwd").c_str()) != 0) return 2;
                      EXPECT_THROW(ApplyInitializationInfo(InitializationInfo()), UnsafeBaseDirectory);
                      EXPECT_FALSE(m_baseDirectory.HasPath());
                      EXPECT_FALSE(initialized);
                      return ::testing::Test::HasFailure() ? 1 : 0;
                  },
                  std::chrono::seconds(10)),
              0);
    EXPECT_EQ(List("cwd"), std::set<std::string>{"kept"});
}

TEST_F(ApplyInitializationInfoTest, AFailureLeavesEarlyAndUninitialised) {
    InitializationInfo nameless = In("a", Delivering({{"first", "", "1"}}, false));
    nameless.supportFiles.push_back(FileTransfer{FileName(), FileName(), "YQ=="});
    nameless.supportFiles.push_back(FileTransfer{FileName("second"), FileName(), "YQ=="});
    EXPECT_THROW(ApplyInitializationInfo(nameless), IllegalFileName);
    EXPECT_EQ(List("a"), std::set<std::string>{"first"});  // what was written stays

    WriteWholeFile(At("file"), "");
    EXPECT_THROW(ApplyInitializationInfo(In("file/base", Delivering({}, false))), DirectoryNotFoundError);
    // A remind time beyond what an instant holds fails before anything is emptied.
    InitializationInfo far = In("a", Delivering({}, false));
    far.settings.remindTime = TimeObject(DateRecord(1, January, 4000000), TimeOfDay(), TimeZone());
    EXPECT_THROW(ApplyInitializationInfo(far), NoSuchDate);
    EXPECT_EQ(List("a"), std::set<std::string>{"first"});
    EXPECT_FALSE(initialized);
}

// setlocale and loaded translations are process-wide: each case runs in a child of its own.
void InChild(const char* locale, const std::function<void()>& body) {
    const int status = RunInForkedChild(
        [&] {
            ::setenv("LC_ALL", locale, 1);
            body();
            return ::testing::Test::HasFailure() ? 1 : 0;
        },
        std::chrono::seconds(10));
    EXPECT_EQ(status, 0) << "the child failed";
}

TEST_F(ApplyInitializationInfoTest, LoadsTheFilesOfTheRealLocale) {
    struct Case { const char *locale, *ctype; InitializationInfo info; std::map<std::string, std::string> texts; };
    const Case cases[] = {
        {"de_DE.UTF-8", "de_DE.UTF-8",
         In("de", Delivering({{"_brand.xlat", "", "K1\tplain\nK4\tplain"},  // replaced by the localized one
                               {"_BRANDDE_DE.xlat", "", "K1\tlokal\nK2\tlokal"},
                               {"de.xlat", "", "K2\tallgemein"}})),
         {{"K1", "lokal"}, {"K2", "allgemein"}, {"K4", "-"}}},
        {"C.UTF-8", "C.UTF-8", In("c", Delivering({{"_brand.xlat", "sub", "K3\tsub"}, {"C.xlat", "", "K2\tc"}})),
         {{"K2", "c"}, {"K3", "-"}}},
        // Without UseLocale the locale is never even set.
        {"de_DE.UTF-8", "C",
         In("off", Delivering({{"_brandde.xlat", "", "K1\tx"}, {"_brand.xlat", "", "K1\tplain"},
                               {"de.xlat", "", "K1\tx"}},
                              false)),
         {{"K1", "plain"}}},
    };
    if (!LocaleInstalled("de_DE.UTF-8")) GTEST_SKIP() << "locale de_DE.UTF-8 is not installed";
    for (const Case& c : cases) {
        SCOPED_TRACE(c.info.baseDirectory.Path());
        InChild(c.locale, [&c] {
            ApplyInitializationInfo(c.info);
            EXPECT_STREQ(std::setlocale(LC_CTYPE, nullptr), c.ctype);
            EXPECT_EQ(international, std::string(c.ctype) != "C");
            EXPECT_TRUE(initialized);
            for (const auto& [key, text] : c.texts) EXPECT_EQ(Translated(key.c_str()), text) << key;
        });
    }
}

}  // namespace
