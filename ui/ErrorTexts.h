#pragma once

// The texts with which the X handlers end the process. They only document the
// call site, except the font warning's, which the client receives.

#include <cstddef>
#include <string>

// Room for an X error's text, the prefix and the terminating NUL included.
constexpr std::size_t kXErrorTextBuffer = 2048;
constexpr char kXErrorPrefix[] = "XError: ";
constexpr char kXtErrorPrefix[] = "XtError: ";

// "XError: " and the server's text for the error, or "Unknown XError" in its
// place when the server gives none; within kXErrorTextBuffer - 1 characters.
std::string XErrorText(const char* serverText);

// "XtError: " and the toolkit's message, cut to 2047 characters in all.
std::string XtErrorText(const char* message);

// The one toolkit warning that ends the program: no font set can be made, so
// no dialog could show a single text.
bool IsFatalWarning(const char* name);

// The warning's name, then " (" + the toolkit's message for it + ")" when it
// has one: what the client receives as the font error's DebugString.
std::string FatalWarningText(const char* name, const char* message);
