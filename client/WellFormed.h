#pragma once

// Whether a document a scenario sends verbatim is well-formed XML, judged by
// a strict parser (the program's own reader accepts nearly anything, so a
// typo would otherwise reach it as some other tree).

#include <optional>
#include <string>

struct XMLFault {
    int line = 0;  // 1 for the document's first line
    std::string reason;
};

// Nothing for a well-formed document; else where and why it is not.
std::optional<XMLFault> CheckWellFormed(const std::string& document);
