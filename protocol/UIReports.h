#pragma once

// The records this program sends to the client.

#include <string>

#include "base/time/Instant.h"
#include "base/time/TimeObject.h"

class XMLWriter;
class XMLElement;

// Sent once, right after the pipe starts. Carries nothing.
struct ReadyForData {};

// The user's decision on one action, or the automatic run of a forced one.
struct ActionTaken {
    ActionTaken() = default;
    ActionTaken(unsigned long long id, bool isCancel, bool isOffer = false)
        : isCancel(isCancel), isOffer(isOffer), id(id) {}

    bool isCancel = false;
    // Always false from this program.
    bool isOffer = false;
    unsigned long long id = 0;
};

// When the action dialog is to be shown again.
struct RemindTime {
    RemindTime() = default;
    explicit RemindTime(const TimeObject& time) : time(time) {}

    TimeObject time;
};

// The snooze length the user chose.
struct RemindInterval {
    RemindInterval() = default;
    explicit RemindInterval(TimeInterval interval) : interval(interval) {}

    TimeInterval interval;
};

// This program failed and is about to end.
struct ClientUIErrorMessage {
    enum ErrorCode : unsigned long { NoError = 0, FontError = 1, DialogError = 2 };

    ClientUIErrorMessage() = default;
    ClientUIErrorMessage(ErrorCode code, const std::string& debugString)
        : debugString(debugString), errorCode(code) {}

    // In the locale's encoding.
    std::string debugString;
    unsigned long errorCode = NoError;
};

void XMLSerialize(XMLWriter& writer, ReadyForData& record);
void XMLSerialize(const XMLElement& element, ReadyForData& record);
void XMLSerialize(XMLWriter& writer, ActionTaken& record);
void XMLSerialize(const XMLElement& element, ActionTaken& record);
void XMLSerialize(XMLWriter& writer, RemindTime& record);
void XMLSerialize(const XMLElement& element, RemindTime& record);
void XMLSerialize(XMLWriter& writer, RemindInterval& record);
void XMLSerialize(const XMLElement& element, RemindInterval& record);
void XMLSerialize(XMLWriter& writer, ClientUIErrorMessage& record);
void XMLSerialize(const XMLElement& element, ClientUIErrorMessage& record);
