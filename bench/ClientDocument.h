#pragma once

#include <cstddef>
#include <string>

// A client document of at least `atLeast` bytes (one message when 0): action
// requests as the client writes them, tab-indented, with escapes in the text
// and the script preview in a CDATA section.
std::string ClientDocument(std::size_t atLeast);

// A client document of exactly `requests` such action requests, IDs 1 to
// `requests`.
std::string ClientDocumentOf(int requests);
