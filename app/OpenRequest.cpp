#include "app/OpenRequest.h"

#include <cstring>

#include "app/ClientLink.h"

bool IsOpenRequest(const char* data) {
    return data != nullptr && std::memcmp(data, "open", 4) == 0;
}

void HandleHiddenWindowMessage(const char* data) {
    if (IsOpenRequest(data)) {
        QueueCommand(UICommandType::OpenDialog, 0, 0, 0);
    }
}
