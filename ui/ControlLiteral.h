#pragma once

// The texts the dialogs hand to their widgets. A widget may keep the pointer,
// so each text is a heap string with one owner, which the dialog keeps for as
// long as the widget lives.

#include <memory>

#include "base/unicode/AutoNullTerminated.h"

using ControlString = std::unique_ptr<char[]>;

// A fixed English (UTF-8) label made through the format layer with no
// arguments, so a translation file can replace it by its English wording, and
// converted to the locale's encoding. A character the locale cannot show
// throws UnixPlatform::WideToMultiByteConvertError. Null reads as "".
ControlString ControlLiteral(const char* text);

// A text already in the locale's encoding: only given an owner of its own.
ControlString ControlLiteral(AutoNullTerminated<char> text);

// A literal taken as it is: neither translated nor converted. For the few
// labels that must read the same in every language. Null reads as "".
ControlString FunkyControlLiteral(const char* text);
