#pragma once

// The documents the sample client sends, written with the protocol's own
// records and writer, and the reading of the documents the program sends back.

#include <string>
#include <vector>

#include "base/time/Instant.h"
#include "client/Scenario.h"

struct InitializationInfo;

// One ClientToUI document holding every record command of `commands`, in
// order. Relative times (deadlines, quiet periods) count from `now`.
std::string RecordsDocument(const std::vector<Command>& commands, Instant now);

// The InitializationInfo for a scenario's settings and files, with the files'
// bytes in Base64, writing into `baseDirectory`.
InitializationInfo ScenarioInitialization(const Scenario& scenario, const std::string& baseDirectory, Instant now);
// That record alone in its document.
std::string InitializationInfoDocument(const InitializationInfo& info);

// One record the program reported, decoded.
struct Report {
    // The element name: ReadyForData, ActionTaken, RemindTime, RemindInterval,
    // ClientUIErrorMessage, or whatever else came.
    std::string kind;
    unsigned long long id = 0;
    bool cancel = false;
    // One readable line: "ActionTaken id=42 cancel=false".
    std::string text;
};

// The records of one document from the program, in order. Throws
// ReportUnreadable for text that is not a document, or whose records do not
// decode.
std::vector<Report> ReadReports(const std::string& document);

struct ReportUnreadable {
    std::string reason;
};
