#pragma once

// What the window manager and task bars learn about a dialog's window before
// it is mapped: whose it is (WM_CLASS "ZAMClientUI", "XZAMClientUI"), its
// title in UTF-8 beside the locale's WM_NAME, what kind of window it is, the
// process behind it, and, for the dialogs that belong to the action dialog,
// that they belong to it (WM_TRANSIENT_FOR), so none can hide behind it.
// Only the shells' windows change: widget names and resource classes stay.

#include <X11/Intrinsic.h>

enum class WindowRole {
    ActionDialog,  // the program's main window
    Subordinate,   // the confirmation, details and quiet-period dialogs
    Message,       // a message from the client, belonging to no other window
};

// The window class every dialog shell announces. The shells' widget class
// stays as it is, so no resource file changes meaning.
constexpr char kDialogWindowClass[] = "XZAMClientUI";

// Writes the properties above on the realized, not yet mapped `shell`. A
// subordinate dialog is transient for the action dialog only while that is
// shown. A property the server refuses is skipped, never fatal.
void IdentifyWindow(Widget shell, WindowRole role);

// Writes the UTF-8 titles again after the shell's title changed.
void RetitleWindow(Widget shell);
