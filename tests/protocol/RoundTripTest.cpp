// Every record the client sends, written by our code and read back, is the
// record it was: the sample client writes its documents with this code.
#include <string>

#include <gtest/gtest.h>

#include "base/xml/SimpleXML.h"
#include "protocol/ActionRequest.h"
#include "protocol/ClientRequests.h"
#include "protocol/Documents.h"
#include "protocol/InitializationInfo.h"
#include "protocol/UIReports.h"

namespace {

template <class Record>
Record ReadBack(const Record& original) {
    const AutoUString<UTF8> text = ConvertToXML(original);
    std::unique_ptr<XMLElement> root = SimpleXML::Parse(text.Ref());
    EXPECT_NE(root, nullptr);
    Record copy;
    if (root) {
        XMLLoad(root->GetChildElement(XMLTag(original)), copy);
    }
    return copy;
}

const Instant kDeadline(1763165760LL * 1000000);

TEST(RoundTrip, ActionRequests) {
    ActionRequest plain;
    plain.id = 42;
    plain.title = "Update installer";
    plain.shortDescription = "Installs the latest updates.";

    const ActionRequest full(18446744073709551615ull, TimeObject(kDeadline, TimeZone(-5 * 3600 - 1800)),
                             "Restart <now> & \"then\"", "Text with ]]> inside and <markup>", true, true, true,
                             SharedUString<UTF8>("#!/bin/sh\n\techo 'hi' > /dev/null\n"), true, true,
                             SharedUString<UTF8>("Save your work: caf\xc3\xa9"), true);
    ActionRequest emptyOptionals = full;
    emptyOptionals.preview = SharedUString<UTF8>();
    emptyOptionals.preActionMessage = NullOr<SharedUString<UTF8>>::Null();

    for (const ActionRequest* action : std::initializer_list<const ActionRequest*>{&plain, &full, &emptyOptionals}) {
        SCOPED_TRACE(action->title.ToString());
        EXPECT_EQ(ReadBack(*action), *action);
    }
    // Equality of times compares instants; the zone travels too.
    EXPECT_EQ(ReadBack(full).deadline->Zone().Seconds(), -5 * 3600 - 1800);
}

TEST(RoundTrip, InitializationInfo) {
    InitializationInfo info;
    info.baseDirectory = MakeFileLocation("/var/tmp/ZAM/ClientUI/.alice");
    info.supportFiles.push_back(FileTransfer{FileName("_brand.xlat"), FileName(), "SGVsbG8="});
    info.supportFiles.push_back(FileTransfer{FileName("de.xlat"), FileName("lang"), ""});
    info.settings.remindInterval = TimeInterval(15LL * 60 * 1000000);
    info.settings.remindTime = TimeObject(kDeadline, TimeZone(3600));
    info.settings.historyMode = 3;
    info.settings.maxHistoryAge = TimeInterval(86400LL * 1000000);
    info.settings.allowSnooze = false;
    info.settings.useLocale = true;
    info.settings.initialTabID = std::string("history");
    EXPECT_EQ(ReadBack(info), info);
    EXPECT_EQ(ReadBack(InitializationInfo()), InitializationInfo());
}

TEST(RoundTrip, TheOtherRequests) {
    MessageRequest message;
    message.title = "Done";
    message.message = "Your computer & you are up to date.";
    message.isCompletionMessage = true;
    message.timeout = TimeInterval(30LL * 1000000);
    message.id = 8;
    EXPECT_EQ(ReadBack(message), message);
    EXPECT_EQ(ReadBack(MessageRequest()), MessageRequest());

    QuietModeStart quiet;
    quiet.startTime = TimeObject(kDeadline, TimeZone(0));
    quiet.endTime = TimeObject(kDeadline + TimeInterval(3600LL * 1000000), TimeZone(7200));
    EXPECT_EQ(ReadBack(quiet), quiet);

    for (int type = RemoveRequest::Action; type <= RemoveRequest::All; ++type) {
        const RemoveRequest remove(static_cast<RemoveRequest::RemoveType>(type), 77);
        EXPECT_EQ(ReadBack(remove), remove);
    }
}

}  // namespace
