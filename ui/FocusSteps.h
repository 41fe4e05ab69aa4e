#pragma once

// Where the keyboard focus and a list's highlight go next, free of X: the
// keyboard side of the dialogs only reads which controls take input and how
// many rows a list has, and asks here.

#include <optional>
#include <string_view>
#include <vector>

// The control after `from` (before it when `step` is -1) in the dialog's
// focus order that takes input, going round past either end; `from` itself
// comes last. -1 when none does (the whole dialog disabled).
int NextSensitive(const std::vector<bool>& sensitive, int from, int step);

// Where the focus rests once the controls' states have changed: `focused`
// while it still takes input, else the next one that does, so the keyboard
// never stays on a control that receives no key. -1 when none does.
int SettledFocus(const std::vector<bool>& sensitive, int focused);

// The keys that move a list's highlight.
enum class ListStep { Up, Down, Home, End, PageUp, PageDown };

// The step an action's parameter names ("up", "pageDown", ...).
std::optional<ListStep> ListStepNamed(std::string_view name);

// The row the highlight moves to in a list of `count` rows from `current`
// (-1: none yet, when every step starts at the first row but End), a page
// being `pageRows` rows (at least one), never past either end. -1 for an
// empty list.
int SteppedRow(int current, int count, ListStep step, int pageRows);
