#pragma once

#include <string>

// Path of a file below tests/data/, for tests that read fixtures.
std::string TestDataPath(const std::string& relative);
