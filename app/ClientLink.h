#pragma once

// The program's side of the pipe: the three queues the threads share, the
// pipe itself, and the ways to send to the client and to queue user commands.

#include "base/unicode/UString.h"
#include "pipe/UICommand.h"
#include "pipe/UIMessage.h"
#include "pipe/UnixPipe.h"
#include "protocol/Documents.h"
#include "protocol/UIReports.h"

// Made once and never destroyed (references to heap objects): the pipe's
// threads may still use them while the process ends.
extern UIMessageQueue& readQ;
extern UIMessageQueue& writeQ;
extern UICommandQueue& uiCommandQ;

// The one pipe, created by main; null before.
extern UnixPipe* clientPipe;

// Carries no state: every send goes through writeQ.
class PipeWriter {};
extern PipeWriter clientWriter;

// Queues one document for the writer thread and returns at once.
void SendToClient(PipeWriter& writer, UStringRef<UTF8> text);

// ActionTaken, RemindTime and RemindInterval travel under "UIToClient".
template <class Record>
void SendToClient(PipeWriter& writer, const Record& record) {
    SendToClient(writer, ConvertToUIToClientXML(record).Ref());
}

// ReadyForData and ClientUIErrorMessage travel under "ClientToUI".
template <class Record>
void WriteXMLToClient(Record& record) {
    SendToClient(clientWriter, ConvertToXML(record).Ref());
}

// Sends the error twice, then waits (a second at a time, at most 300 times)
// until the writer thread has taken everything queued.
void SendErrorToClient(ClientUIErrorMessage& error);

// From widget callbacks and event handlers, on the main thread. Only the low
// 32 bits of `seconds` are kept.
void QueueCommand(UICommandType type, unsigned long long id, long minutes, long long seconds);
// The same for a command made whole, e.g. one about a pending entry.
void QueueCommand(const UICommand& command);
