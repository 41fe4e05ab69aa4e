#include "app/ClientLink.h"

#include <memory>

#include "pipe/Sleep.h"

// Allocated on first use and never deleted: the reader and writer threads may
// still be inside them while exit runs the destructors of ordinary globals.
UIMessageQueue& readQ = *new UIMessageQueue;
UIMessageQueue& writeQ = *new UIMessageQueue;
UICommandQueue& uiCommandQ = *new UICommandQueue;

UnixPipe* clientPipe = nullptr;
PipeWriter clientWriter;

void SendToClient(PipeWriter&, UStringRef<UTF8> text) {
    UIMessage message;
    message.tag = 0;
    message.text = AutoUString<UTF8>(text);
    writeQ.WriteMessage(std::move(message));
}

void SendErrorToClient(ClientUIErrorMessage& error) {
    WriteXMLToClient(error);
    WriteXMLToClient(error);
    // The caller ends the process next: give the writer thread up to five
    // minutes to take both copies.
    for (int checks = 0; checks < 300 && !writeQ.IsEmpty(); ++checks) {
        MilliSecondSleep(1000);
    }
}

void QueueCommand(UICommandType type, unsigned long long id, long minutes, long long seconds) {
    uiCommandQ.WriteMessage(std::make_unique<UICommand>(type, id, static_cast<std::int32_t>(minutes),
                                                        static_cast<std::uint32_t>(seconds)));
}

void QueueCommand(const UICommand& command) {
    uiCommandQ.WriteMessage(std::make_unique<UICommand>(command));
}
