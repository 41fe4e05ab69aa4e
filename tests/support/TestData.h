#pragma once

#include <string>

// Path of a file below tests/data/, for tests that read fixtures.
std::string TestDataPath(const std::string& relative);

// Whether `locale` is installed. The test command makes the locales tests need
// and sets ZAM_REQUIRE_LOCALES=1: there a missing one fails the test instead of
// letting it skip quietly.
bool LocaleInstalled(const char* locale);
