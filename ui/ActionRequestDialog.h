#pragma once

// The action request dialog, the program's main window: it lists the pending
// actions (from the keyed store, in ID order), explains the selected one or
// all of them, and offers to take all, take or cancel the selected one, show
// its details, or snooze. Its buttons never talk to the client: each queues a
// user command for the next tick and disables the dialog until the command's
// handling enables it again. Built when shown, destroyed when hidden; at most
// one exists. Free of X headers, so the dispatch's side can include it.
//
// Every entry point does nothing before the X application exists: client
// documents are handled during start-up, before the display is open.

#include "base/time/Instant.h"

// As the toolkit declares it, without its headers.
typedef struct _WidgetRec* Widget;

namespace ActionRequestDialog {

// Builds and shows the dialog unless it exists already; keeps `snoozable` and
// `remindInterval` (the snooze list preselects the entry nearest to it) for
// the dialog's life. The first argument is not used. The window is mapped
// once its first refresh has filled it. A dialog that cannot be built or
// filled is reported to the client (code 2) and ends the program.
void Show(bool forceShow, const TimeInterval& remindInterval, bool snoozable);

// Owes a refresh of the list, texts and buttons, when the dialog is shown and
// enabled; FlushRefresh runs it. So a batch of many client documents costs one
// refresh. Should nobody flush, the refresh runs once the X loop is idle.
void Update();

// Runs the refresh Update owes, if any. A refresh that fails (a client text
// the locale cannot show) never throws and never leaves a half-refreshed
// window: the dialog is destroyed, the client told (code 2,
// "ActionRequestDialog") and the program ends, as for a dialog that cannot
// be built. The same holds for the refresh of a selection in the list.
void FlushRefresh();

// Destroys the dialog. The selection and the remind interval are kept for the
// next one.
void Hide();

// Makes the seven interactive widgets sensitive again and refreshes at once.
void Enable();

// Runs an owed refresh first, then makes the seven interactive widgets
// insensitive; they are insensitive afterwards even if that refresh fails.
void Disable();

bool IsShown();
bool IsEnabled();
// The shown dialog's shell once realized, else null (also after its
// application context was closed).
Widget Shell();

}  // namespace ActionRequestDialog
