#pragma once

#include <cstdint>
#include <memory>

#include "pipe/LockedQueue.h"

// What a dialog asks the main loop to do. Values are part of the program's
// vocabulary; anything outside them is ignored by the dispatch.
enum class UICommandType : std::int32_t {
    TakeAll = 0,
    ShowDetails = 1,
    DetailsClosed = 2,
    CancelAction = 3,
    TakeAction = 4,
    Snooze = 5,
    ConfirmAccepted = 6,
    ConfirmDeclined = 7,
    QuietModeClosed = 8,
    OpenDialog = 9,
};

// One queued user command. Arguments a type does not use are 0.
class UICommand {
public:
    UICommand(UICommandType type, std::uint64_t id, std::int32_t minutes, std::uint32_t seconds,
              std::uint64_t entry = 0)
        : type(type), id(id), minutes(minutes), seconds(seconds), entry(entry) {}
    virtual ~UICommand() = default;

    UICommandType type;
    std::uint64_t id;      // action or message id
    std::int32_t minutes;  // Snooze only
    std::uint32_t seconds; // Snooze only
    // The pending entry the user acted on (take, cancel, details, a
    // confirmation's answer), or for TakeAll the newest entry the dialog
    // showed when pressed; 0 when not known, and then the ID decides.
    std::uint64_t entry;
};

// `uiCommandQ`: owns the commands while they wait for the next tick.
class UICommandQueue : public LockedQueue<std::unique_ptr<UICommand>> {};
