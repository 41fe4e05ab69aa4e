#include "tests/support/TestData.h"

#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

std::string TestDataPath(const std::string& relative) {
    return std::string(ZAM_SOURCE_DIR) + "/tests/data/" + relative;
}

std::string ReadTestFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    EXPECT_TRUE(in.good()) << "cannot read " << path;
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
}
