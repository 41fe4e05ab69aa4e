#pragma once

// The client's one-time set-up message: where this run's files go, the files
// themselves, and the initial UI settings.

#include <string>
#include <vector>

#include "base/files/FileLocation.h"
#include "base/files/FileName.h"
#include "base/time/Instant.h"
#include "base/time/TimeObject.h"
#include "protocol/NullOr.h"

class XMLElement;
class XMLWriter;

// One file delivered by the client.
struct FileTransfer {
    FileName fileName;
    // Empty: the base directory itself.
    FileName subFolder;
    // The file's bytes in Base64.
    std::string content;
};

struct InitialUISettings {
    TimeInterval remindInterval;
    NullOr<TimeObject> remindTime;
    // The settings below up to allowSnooze, and those after it, are read but
    // have no effect in this program. The client always sends the ones
    // without a documented default; they start at 0 and false.
    unsigned long historyMode = 0;
    NullOr<TimeInterval> maxHistoryAge;
    unsigned long techHistoryMode = 0;
    NullOr<TimeInterval> maxTechHistoryAge;
    unsigned long balloonMode = 1;
    unsigned long trayMode = 2;
    bool hasMainDialog = true;
    bool allowSnooze = true;
    bool alwaysTopmost = false;
    bool displaySingleActionSummary = true;
    bool useLocale = false;
    TimeInterval idleThreshold;
    bool useActivityTracking = false;
    bool actionRunningTray = false;
    NullOr<std::string> initialTabID;
};

struct InitializationInfo {
    std::vector<FileTransfer> supportFiles;
    FileLocation baseDirectory;
    InitialUISettings settings;

    // Named support files: the first top-level file (empty sub-folder) with
    // the name, ignoring ASCII letter case.
    NullOrConstRef<FileTransfer> NoSelectionPage() const;
    NullOrConstRef<FileTransfer> TechnicianPage() const;
    NullOrConstRef<FileTransfer> Dashboard() const;
    NullOrConstRef<FileTransfer> BrandIcon() const;
    NullOrConstRef<FileTransfer> BrandTranslation() const;
    NullOrConstRef<FileTransfer> LocalizedBrandTranslation(const FileName& full, const FileName& language) const;
    NullOrConstRef<FileTransfer> GeneralLocalization(const FileName& full, const FileName& language) const;

    // prefix + full + ".xlat", else prefix + language + ".xlat". A name that
    // breaks the file-name rules throws as a FileName would.
    NullOrConstRef<FileTransfer> GetLocalization(const FileName& prefix, const FileName& full,
                                                 const FileName& language) const;

    const NullOr<std::string>& InitialTabID() const { return settings.initialTabID; }

private:
    NullOrConstRef<FileTransfer> FindTopLevelFile(const std::string& name) const;
};

// "/var/tmp/ZAM/ClientUI", or a hidden folder in it per user name.
std::string UISessionDefaultDirectory(const std::string& name);

void XMLSerialize(XMLWriter& writer, FileTransfer& record);
void XMLSerialize(const XMLElement& element, FileTransfer& record);
void XMLSerialize(XMLWriter& writer, InitialUISettings& record);
void XMLSerialize(const XMLElement& element, InitialUISettings& record);
void XMLSerialize(XMLWriter& writer, InitializationInfo& record);
void XMLSerialize(const XMLElement& element, InitializationInfo& record);

bool operator==(const FileTransfer& a, const FileTransfer& b);
bool operator==(const InitialUISettings& a, const InitialUISettings& b);
bool operator==(const InitializationInfo& a, const InitializationInfo& b);
