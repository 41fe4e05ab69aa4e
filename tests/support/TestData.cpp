#include "tests/support/TestData.h"

#include <locale.h>

#include <cstdlib>

#include <gtest/gtest.h>

std::string TestDataPath(const std::string& relative) {
    return std::string(ZAM_SOURCE_DIR) + "/tests/data/" + relative;
}

bool LocaleInstalled(const char* locale) {
    if (const locale_t found = ::newlocale(LC_CTYPE_MASK, locale, locale_t(0))) {
        ::freelocale(found);
        return true;
    }
    const char* required = std::getenv("ZAM_REQUIRE_LOCALES");
    if (required != nullptr && std::string(required) == "1") {
        ADD_FAILURE() << "locale " << locale << " is missing (scripts/test.sh makes it)";
    }
    return false;
}
