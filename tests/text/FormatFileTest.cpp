// Loading into the process-wide context cannot be undone, so this binary holds
// the only test that does it.
#include "text/FormatFile.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "base/files/FileErrors.h"
#include "text/UFormat.h"

namespace {

TEST(AddTranslationFile, LaterFilesComeFirst) {
    char dir[] = "/tmp/FormatFileTest.XXXXXX";
    ASSERT_NE(mkdtemp(dir), nullptr);
    const auto text = [](const char* key) { return MakeUString(FormatPlusArguments(UFormat(key, key), "7")).Str(); };
    const char* const kFiles[] = {
        "all {n}\tfirst {n}\r\nearly {n}\tfrom first {n}\r\n",
        "all {n}\tsecond {n}\nmiddle {n}\tfrom second {n}",
        "all {n}\t{n} third\n",
    };
    for (const char* bytes : kFiles) {
        const std::string path = std::string(dir) + "/" + std::to_string(m_formatFiles.size()) + ".xlat";
        std::ofstream(path, std::ios::binary) << bytes;
        AddTranslationFile(MakeFileLocation(path));
    }
    EXPECT_THROW(AddTranslationFile(MakeFileLocation(std::string(dir) + "/absent.xlat")), FileNotFoundError);
    EXPECT_EQ(text("all {n}"), "7 third");
    EXPECT_EQ(text("middle {n}"), "from second 7");
    EXPECT_EQ(text("early {n}"), "from first 7");
    EXPECT_EQ(text("untranslated {n}"), "untranslated 7");
    EXPECT_EQ(m_formatOverrides.size(), 3u);  // the unreadable file left no trace
    std::filesystem::remove_all(dir);
}

}  // namespace
