#pragma once

// The screen that the dispatch, the tick and the exit path talk to
// (app/DialogCalls.h), as the X side shows it. main wires it in. Free of X
// headers, so main can include it.

#include "app/DialogCalls.h"

class XDialogCalls : public DialogCalls {
public:
    void ShowActionRequestDialog(bool forceShow, const TimeInterval& remindInterval, bool snoozable) override;
    void UpdateActionRequestDialog() override;
    void FlushActionRequestDialog() override;
    bool IsActionRequestDialogShown() override;
    void EnableActionRequestDialog() override;
    void DisableActionRequestDialog() override;
    void RaiseActionRequestDialog() override;
    void MarkActionRequestDialogUrgent() override;
    void ShowActionDetailsDialog(unsigned long long id, EntryNumber entry) override;
    void ShowConfirmationRequestDialog(unsigned long long id, EntryNumber entry) override;
    bool IsActionDetailsDialogShown() override;
    bool IsConfirmationDialogShown() override;
    void ShowMessageDialog(const MessageRequest& request) override;
    void RemoveMessageDialog(unsigned long long id) override;
    void RemoveTimedoutMessageDialogs() override;
    void ShowQuietModeDialog(const Instant& start, const Instant& end) override;
    void RemoveQuietModeDialog() override;
    bool IsQuietModeDialogShown() override;
    void CreateHiddenWindowOnce() override;
    void DestroyApplicationContext() override;
};
