#pragma once

// The client's requests besides ActionRequest and InitializationInfo.

#include "base/time/Instant.h"
#include "base/time/TimeObject.h"
#include "base/unicode/UString.h"
#include "protocol/NullOr.h"

class XMLElement;
class XMLWriter;

// Withdraws an action, a message, or both.
struct RemoveRequest {
    // The values travel as the words "Action", "Offer", "Message" and "All".
    enum RemoveType : int { Action = 0, Offer = 1, Message = 2, All = 3 };

    RemoveRequest() = default;
    RemoveRequest(RemoveType type, unsigned long long id) : type(type), id(id) {}

    // Any other word, or none, leaves the default "All": a request that cannot
    // be understood withdraws everything with that ID.
    int type = All;
    unsigned long long id = 0;
};

// Reads "RemoveType" (compared exactly) and "ID".
void XMLLoad(const XMLElement& element, RemoveRequest& record);
// Writes "RemoveType" first, left out for a type outside the four values.
void XMLSerialize(XMLWriter& writer, RemoveRequest& record);

// Shows a message dialog.
struct MessageRequest {
    SharedUString<UTF8> title;
    SharedUString<UTF8> message;
    bool isCompletionMessage = false;
    // Absent: the dialog never closes by itself.
    NullOr<TimeInterval> timeout;
    unsigned long long id = 0;
};

void XMLSerialize(XMLWriter& writer, MessageRequest& record);
void XMLSerialize(const XMLElement& element, MessageRequest& record);

// A quiet period begins.
struct QuietModeStart {
    TimeObject startTime;
    TimeObject endTime;
};

void XMLSerialize(XMLWriter& writer, QuietModeStart& record);
void XMLSerialize(const XMLElement& element, QuietModeStart& record);

// The quiet period is over. Carries nothing.
struct QuietModeEnd {};

void XMLSerialize(XMLWriter& writer, QuietModeEnd& record);
void XMLSerialize(const XMLElement& element, QuietModeEnd& record);

bool operator==(const RemoveRequest& a, const RemoveRequest& b);
bool operator==(const MessageRequest& a, const MessageRequest& b);
bool operator==(const QuietModeStart& a, const QuietModeStart& b);
