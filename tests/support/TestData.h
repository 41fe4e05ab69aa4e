#pragma once

#include <string>

// Path of a file below tests/data/, for tests that read fixtures.
std::string TestDataPath(const std::string& relative);

// The whole content of a file, as bytes; fails the calling test when unreadable.
std::string ReadTestFile(const std::string& path);
