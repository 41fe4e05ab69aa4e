#include "tests/support/TestData.h"

std::string TestDataPath(const std::string& relative) {
    return std::string(ZAM_SOURCE_DIR) + "/tests/data/" + relative;
}
