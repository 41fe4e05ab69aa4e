#include "text/LocalizedStrings.h"

#include "base/time/TimeObject.h"
#include "base/time/TimeZone.h"
#include "text/FormattedValues.h"
#include "text/UFormat.h"

namespace LocalizedStrings {

const char kVersion[] = "1.0.0.0";
const char kBuildYear[] = "2026";

namespace {

// The English text is both the key and the default of its translation.
template <class... Arguments>
AutoNullTerminated<char> Platform(const char* english, const Arguments&... arguments) {
    return MakePlatformString(FormatPlusArguments(UFormat(english, english), arguments...));
}

template <class... Arguments>
AutoUString<UTF8> UTF8Text(const char* english, const Arguments&... arguments) {
    return MakeUString(FormatPlusArguments(UFormat(english, english), arguments...));
}

AutoUString<UTF8> LocalTimeOfDay(Instant instant) {
    return UnixPlatform::FormattedTimeOfDay(TimeObject(instant, TimeZone::Local()).Time());
}

}  // namespace

AutoNullTerminated<char> QuietModeTitle() { return Platform("Not Currently Available"); }
AutoNullTerminated<char> Cancel() { return Platform("Cancel"); }
AutoNullTerminated<char> OK() { return Platform("OK"); }
AutoNullTerminated<char> EnteringQuietModeTitle() { return Platform("Entering Restricted Mode"); }
AutoNullTerminated<char> PreviewDialogTitle() { return Platform("Action Script Preview"); }
AutoNullTerminated<char> LastChangeCap() { return Platform("Last Status Change:"); }
AutoNullTerminated<char> IssueTimeCap() { return Platform("Issued Time:"); }
AutoNullTerminated<char> CategoryCap() { return Platform("Category:"); }
AutoNullTerminated<char> IssuerCap() { return Platform("Action Issuer:"); }
AutoNullTerminated<char> LineCap() { return Platform("Last Complete Line Number:"); }
AutoNullTerminated<char> TypeCap() { return Platform("Script Type:"); }
AutoNullTerminated<char> ScriptBoxCap() { return Platform("Action Script"); }
AutoNullTerminated<char> RetryCap() { return Platform("Retry Count:"); }
AutoNullTerminated<char> AcceptOffersButton() { return Platform("Accept"); }
AutoNullTerminated<char> HideOffersButton() { return Platform("Hide"); }
AutoNullTerminated<char> ToggleHiddenOffersCheck() { return Platform("Show Hidden Offers"); }
AutoNullTerminated<char> SearchCaption() { return Platform("Search:"); }
AutoNullTerminated<char> ProgressCaption() {
    return Platform("The following actions are currently running on this computer:");
}
AutoNullTerminated<char> ViewPostponed() { return Platform("View Postponed Actions"); }
AutoNullTerminated<char> AboutTitle() { return Platform("About Vorkan Tendwell"); }
AutoNullTerminated<char> MainDialogTitle() { return Platform("Vorkan Tendwell"); }
AutoUString<UTF8> Progress() { return UTF8Text("Progress"); }
AutoUString<UTF8> TechnicianTab() { return UTF8Text("Technician"); }
AutoUString<UTF8> SupportDashboard() { return UTF8Text("Dashboard"); }
AutoUString<UTF8> Offers() { return UTF8Text("Offers"); }
AutoNullTerminated<char> AboutMenu() { return Platform("&About Vorkan Tendwell..."); }
// "Application Count:" under the name TryCap is how translation files have
// always known this caption; keep the pair as it is.
AutoNullTerminated<char> TryCap() { return Platform("Application Count:"); }
AutoNullTerminated<char> IDCap() { return Platform("Action ID:"); }
AutoNullTerminated<char> NameCap() { return Platform("Action Name:"); }
AutoNullTerminated<char> ActionHistoryTitle() { return Platform("Action Details"); }
AutoNullTerminated<char> Loading() { return Platform("Loading..."); }
AutoNullTerminated<char> MenuViewPostponed() { return Platform("&View Postponed Actions..."); }
AutoNullTerminated<char> MenuPaste() { return Platform("&Paste{_tab}Ctrl-V"); }
AutoNullTerminated<char> MenuCopy() { return Platform("&Copy{_tab}Ctrl-C"); }
AutoNullTerminated<char> MenuCut() { return Platform("Cu&t{_tab}Ctrl-X"); }
AutoNullTerminated<char> MenuEdit() { return Platform("&Edit"); }
AutoNullTerminated<char> MenuOpen() { return Platform("&Open Vorkan Tendwell"); }
AutoNullTerminated<char> MenuViewActionDialog() { return Platform("Open &Action Requests"); }
// The help and exit entries use the short product word, unlike AboutMenu;
// translation files key on these exact texts.
AutoNullTerminated<char> MenuHelpAbout() { return Platform("&About Tendwell"); }
AutoNullTerminated<char> MenuHelpContents() { return Platform("Vorkan Tendwell &Help Topics"); }
AutoNullTerminated<char> MenuHelp() { return Platform("&Help"); }
AutoNullTerminated<char> MenuExit() { return Platform("E&xit Tendwell"); }
AutoNullTerminated<char> MenuFile() { return Platform("&File"); }
// Two spaces after each full stop, as translation files have them.
AutoUString<UTF8> ShutdownNowDescription() {
    return UTF8Text(
        "Your system administrator is requesting that you shutdown your computer.  Please save any "
        "unsaved work and then take this action to shutdown your computer.");
}
AutoUString<UTF8> RestartNowDescription() {
    return UTF8Text(
        "Your system administrator is requesting that you restart your computer.  Please save any "
        "unsaved work and then take this action to restart your computer.");
}
AutoUString<UTF8> ShutdownNow() { return UTF8Text("Shutdown Now"); }
AutoUString<UTF8> RestartNow() { return UTF8Text("Restart Now"); }
AutoNullTerminated<char> PreviewAction() { return Platform("Preview Action..."); }
AutoNullTerminated<char> ConfirmationCaption() {
    return Platform("This action requires you to acknowledge the following confirmation message:");
}
AutoNullTerminated<char> PreActionTitle() { return Platform("Confirmation Required"); }
AutoNullTerminated<char> SnoozeCaption() { return Platform("Click Snooze to be reminded again:"); }
AutoNullTerminated<char> TakeAllActions() { return Platform("Take All Actions"); }
AutoNullTerminated<char> ActionRequestTitle() { return Platform("Action Requests"); }
AutoNullTerminated<char> Dismiss() { return Platform("Dismiss"); }

AutoNullTerminated<char> QuietModeExplanation(Instant start, Instant end) {
    return Platform("Your administrator has disabled this feature between {start} and {end}.",
                    LocalTimeOfDay(start), LocalTimeOfDay(end));
}

AutoNullTerminated<char> EnteringQuietModeExplanation(Instant start, Instant end) {
    return Platform(
        "Your administrator has disabled the Vorkan Tendwell between {start} and {end}.  "
        "The application will now close.",
        LocalTimeOfDay(start), LocalTimeOfDay(end));
}

AutoUString<UTF8> AnnounceOffers(std::uint32_t count) {
    if (count == 1) {
        return UTF8Text("You Have 1 New Offer");
    }
    return UTF8Text("You Have {number} New Offers", UnixPlatform::FormattedNumber(count));
}

AutoNullTerminated<char> TrayTip(std::uint32_t count) {
    if (count == 0) {
        return Platform("Click to open Vorkan Tendwell");
    }
    if (count == 1) {
        return Platform("You have 1 pending action.");
    }
    return Platform("You have {number} pending actions.", UnixPlatform::FormattedNumber(count));
}

AutoNullTerminated<char> AboutVersion() {
    return Platform("Vorkan Tendwell version {version}", kVersion);
}

AutoNullTerminated<char> AboutNotice() {
    return Platform(
        "Copyright (C) {year} ZAM. All rights reserved. This program and its documentation are "
        "licensed, not sold, and may be used only under the terms of your ZAM licence agreement.",
        kBuildYear);
}

}  // namespace LocalizedStrings
