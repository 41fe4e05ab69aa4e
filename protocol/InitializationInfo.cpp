#include "protocol/InitializationInfo.h"

#include <cstddef>

#include "protocol/XMLSerialize.h"

namespace {

bool EqualIgnoringASCIICase(const std::string& a, const std::string& b) {
    if (a.size() != b.size()) {
        return false;
    }
    for (std::size_t i = 0; i < a.size(); ++i) {
        auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
        if (lower(a[i]) != lower(b[i])) {
            return false;
        }
    }
    return true;
}

template <class Archive>
void SerializeFields(Archive& archive, FileTransfer& record) {
    XMLSerialize(archive, "FileName", record.fileName);
    XMLSerialize(archive, "SubFolder", record.subFolder);
    XMLSerialize(archive, "Content", record.content);
}

template <class Archive>
void SerializeFields(Archive& archive, InitialUISettings& record) {
    XMLSerialize(archive, "RemindInterval", record.remindInterval);
    XMLSerialize(archive, "RemindTime", record.remindTime);
    XMLSerialize(archive, "HistoryMode", record.historyMode);
    XMLSerialize(archive, "TechHistoryMode", record.techHistoryMode);
    XMLSerialize(archive, "MaxHistoryAge", record.maxHistoryAge);
    XMLSerialize(archive, "MaxTechHistoryAge", record.maxTechHistoryAge);
    XMLSerialize(archive, "BalloonMode", record.balloonMode);
    XMLSerialize(archive, "TrayMode", record.trayMode);
    XMLSerialize(archive, "HasMainDialog", record.hasMainDialog);
    XMLSerialize(archive, "AllowSnooze", record.allowSnooze);
    XMLSerialize(archive, "AlwaysTopmost", record.alwaysTopmost);
    XMLSerialize(archive, "DisplaySingleActionSummary", record.displaySingleActionSummary);
    XMLSerialize(archive, "UseLocale", record.useLocale);
    XMLSerialize(archive, "IdleThreshold", record.idleThreshold);
    XMLSerialize(archive, "UseActivityTracking", record.useActivityTracking);
    XMLSerialize(archive, "ActionRunningTray", record.actionRunningTray);
    XMLSerialize(archive, "InitialTabID", record.initialTabID);
}

template <class Archive>
void SerializeFields(Archive& archive, InitializationInfo& record) {
    XMLSerialize(archive, "BaseDirectory", record.baseDirectory);
    XMLSerialize(archive, "SupportFiles", record.supportFiles);
    XMLSerialize(archive, "InitialUISettings", record.settings);
}

}  // namespace

NullOrConstRef<FileTransfer> InitializationInfo::FindTopLevelFile(const std::string& name) const {
    for (const FileTransfer& file : supportFiles) {
        if (file.subFolder.Empty() && EqualIgnoringASCIICase(file.fileName.Text(), name)) {
            return NullOrConstRef<FileTransfer>(file);
        }
    }
    return NullOrConstRef<FileTransfer>::Null();
}

NullOrConstRef<FileTransfer> InitializationInfo::NoSelectionPage() const { return FindTopLevelFile("_noselection.html"); }
NullOrConstRef<FileTransfer> InitializationInfo::TechnicianPage() const { return FindTopLevelFile("_currentTechnician.html"); }
NullOrConstRef<FileTransfer> InitializationInfo::Dashboard() const { return FindTopLevelFile("_currentDashboard.html"); }
NullOrConstRef<FileTransfer> InitializationInfo::BrandIcon() const { return FindTopLevelFile("_clientui.ico"); }
NullOrConstRef<FileTransfer> InitializationInfo::BrandTranslation() const { return FindTopLevelFile("_brand.xlat"); }

NullOrConstRef<FileTransfer> InitializationInfo::LocalizedBrandTranslation(const FileName& full,
                                                                           const FileName& language) const {
    return GetLocalization(FileName("_brand"), full, language);
}

NullOrConstRef<FileTransfer> InitializationInfo::GeneralLocalization(const FileName& full,
                                                                     const FileName& language) const {
    return GetLocalization(FileName(), full, language);
}

NullOrConstRef<FileTransfer> InitializationInfo::GetLocalization(const FileName& prefix, const FileName& full,
                                                                 const FileName& language) const {
    for (const FileName* part : {&full, &language}) {
        if (part->Empty()) {
            continue;
        }
        // Building the FileName applies the file-name rules to the whole name.
        const FileName wanted(prefix.Text() + part->Text() + ".xlat");
        NullOrConstRef<FileTransfer> found = FindTopLevelFile(wanted.Text());
        if (found) {
            return found;
        }
    }
    return NullOrConstRef<FileTransfer>::Null();
}

std::string UISessionDefaultDirectory(const std::string& name) {
    const std::string base = "/var/tmp/ZAM/ClientUI";
    return name.empty() ? base : base + "/." + name;
}

void XMLSerialize(XMLWriter& writer, FileTransfer& record) { SerializeFields(writer, record); }
void XMLSerialize(const XMLElement& element, FileTransfer& record) { SerializeFields(element, record); }
void XMLSerialize(XMLWriter& writer, InitialUISettings& record) { SerializeFields(writer, record); }
void XMLSerialize(const XMLElement& element, InitialUISettings& record) { SerializeFields(element, record); }
void XMLSerialize(XMLWriter& writer, InitializationInfo& record) { SerializeFields(writer, record); }
void XMLSerialize(const XMLElement& element, InitializationInfo& record) { SerializeFields(element, record); }

bool operator==(const FileTransfer& a, const FileTransfer& b) {
    return a.fileName == b.fileName && a.subFolder == b.subFolder && a.content == b.content;
}

bool operator==(const InitialUISettings& a, const InitialUISettings& b) {
    return a.remindInterval == b.remindInterval && a.remindTime == b.remindTime && a.historyMode == b.historyMode &&
           a.maxHistoryAge == b.maxHistoryAge && a.techHistoryMode == b.techHistoryMode &&
           a.maxTechHistoryAge == b.maxTechHistoryAge && a.balloonMode == b.balloonMode &&
           a.trayMode == b.trayMode && a.hasMainDialog == b.hasMainDialog && a.allowSnooze == b.allowSnooze &&
           a.alwaysTopmost == b.alwaysTopmost && a.displaySingleActionSummary == b.displaySingleActionSummary &&
           a.useLocale == b.useLocale && a.idleThreshold == b.idleThreshold &&
           a.useActivityTracking == b.useActivityTracking && a.actionRunningTray == b.actionRunningTray &&
           a.initialTabID == b.initialTabID;
}

bool operator==(const InitializationInfo& a, const InitializationInfo& b) {
    return a.supportFiles == b.supportFiles && a.baseDirectory == b.baseDirectory && a.settings == b.settings;
}
