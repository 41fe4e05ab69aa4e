#pragma once

// The fixed texts the user sees: captions, titles, button and menu labels and
// a few sentences with numbers or times in them. Each function renders its
// English text, which is also the key a translation file names it by, so the
// English below must never change by a single character.
//
// Platform strings (AutoNullTerminated<char>) are in the locale's encoding,
// ready for a widget; a character the locale cannot show throws
// UnixPlatform::WideToMultiByteConvertError. UTF-8 strings are for callers
// that combine the text further. A broken translation throws the format
// layer's error from the call that wanted the text.
//
// "&" marks a menu mnemonic and stays in the text; "{_tab}" separates a menu
// label from its accelerator hint.

#include <cstdint>

#include "base/time/Instant.h"
#include "base/unicode/AutoNullTerminated.h"
#include "base/unicode/UString.h"

namespace LocalizedStrings {

// Four dot-separated numbers, shown by AboutVersion.
extern const char kVersion[];
// The year shown by AboutNotice.
extern const char kBuildYear[];

AutoNullTerminated<char> QuietModeTitle();
AutoNullTerminated<char> Cancel();
AutoNullTerminated<char> OK();
AutoNullTerminated<char> EnteringQuietModeTitle();
AutoNullTerminated<char> PreviewDialogTitle();
AutoNullTerminated<char> LastChangeCap();
AutoNullTerminated<char> IssueTimeCap();
AutoNullTerminated<char> CategoryCap();
AutoNullTerminated<char> IssuerCap();
AutoNullTerminated<char> LineCap();
AutoNullTerminated<char> TypeCap();
AutoNullTerminated<char> ScriptBoxCap();
AutoNullTerminated<char> RetryCap();
AutoNullTerminated<char> AcceptOffersButton();
AutoNullTerminated<char> HideOffersButton();
AutoNullTerminated<char> ToggleHiddenOffersCheck();
AutoNullTerminated<char> SearchCaption();
AutoNullTerminated<char> ProgressCaption();
AutoNullTerminated<char> ViewPostponed();
AutoNullTerminated<char> AboutTitle();
AutoNullTerminated<char> MainDialogTitle();
AutoUString<UTF8> Progress();
AutoUString<UTF8> TechnicianTab();
AutoUString<UTF8> SupportDashboard();
AutoUString<UTF8> Offers();
AutoNullTerminated<char> AboutMenu();
AutoNullTerminated<char> TryCap();
AutoNullTerminated<char> IDCap();
AutoNullTerminated<char> NameCap();
AutoNullTerminated<char> ActionHistoryTitle();
AutoNullTerminated<char> Loading();
AutoNullTerminated<char> MenuViewPostponed();
AutoNullTerminated<char> MenuPaste();
AutoNullTerminated<char> MenuCopy();
AutoNullTerminated<char> MenuCut();
AutoNullTerminated<char> MenuEdit();
AutoNullTerminated<char> MenuOpen();
AutoNullTerminated<char> MenuViewActionDialog();
AutoNullTerminated<char> MenuHelpAbout();
AutoNullTerminated<char> MenuHelpContents();
AutoNullTerminated<char> MenuHelp();
AutoNullTerminated<char> MenuExit();
AutoNullTerminated<char> MenuFile();
AutoUString<UTF8> ShutdownNowDescription();
AutoUString<UTF8> RestartNowDescription();
AutoUString<UTF8> ShutdownNow();
AutoUString<UTF8> RestartNow();
AutoNullTerminated<char> PreviewAction();
AutoNullTerminated<char> ConfirmationCaption();
AutoNullTerminated<char> PreActionTitle();
AutoNullTerminated<char> SnoozeCaption();
AutoNullTerminated<char> TakeAllActions();
AutoNullTerminated<char> ActionRequestTitle();
AutoNullTerminated<char> Dismiss();

// The quiet period's bounds as local times of day; no dates, even when the
// period spans midnight.
AutoNullTerminated<char> QuietModeExplanation(Instant start, Instant end);
AutoNullTerminated<char> EnteringQuietModeExplanation(Instant start, Instant end);

// The singular is its own text (with the digit written in), so translators
// translate each form separately; every count but 1 takes the plural.
AutoUString<UTF8> AnnounceOffers(std::uint32_t count);
// As AnnounceOffers, with a third text for no pending actions.
AutoNullTerminated<char> TrayTip(std::uint32_t count);

AutoNullTerminated<char> AboutVersion();
AutoNullTerminated<char> AboutNotice();

}  // namespace LocalizedStrings
