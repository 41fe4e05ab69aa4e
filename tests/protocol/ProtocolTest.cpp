// The records in both directions. Every record the client sends, written by
// our code and read back, is the record it was: the sample client writes its
// documents with this code. Each document the program sends is pinned once
// byte for byte; other tests build the expected bytes with the same code.
#include <gtest/gtest.h>

#include <string>

#include "base/files/FileName.h"
#include "base/time/TimeErrors.h"
#include "base/unicode/Numerals.h"
#include "base/xml/SimpleXML.h"
#include "protocol/ActionRequest.h"
#include "protocol/ClientRequests.h"
#include "protocol/Documents.h"
#include "protocol/InitializationInfo.h"
#include "protocol/UIReports.h"
#include "protocol/XMLSerialize.h"

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

const std::string kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";

std::string Document(const std::string& root, const std::string& body) {
    return kDeclaration + "\n<" + root + ">" + body + "\n</" + root + ">";
}

TEST(OutgoingDocuments, ByteForByte) {
    struct Case {
        const char* what;
        std::string actual;
        std::string expected;
    };
    const Case cases[] = {
        {"ReadyForData under ClientToUI", ConvertToXML(ReadyForData()).Str(),
         Document("ClientToUI", "\n\t<ReadyForData></ReadyForData>")},
        {"ActionTaken cancelled, largest ID", ConvertToUIToClientXML(ActionTaken(18446744073709551615ull, true)).Str(),
         Document("UIToClient",
                  "\n\t<ActionTaken>\n\t\t<IsCancel>true</IsCancel>\n\t\t<IsOffer>false</IsOffer>"
                  "\n\t\t<ID>18446744073709551615</ID>\n\t</ActionTaken>")},
        {"RemindTime in universal time",
         ConvertToUIToClientXML(RemindTime(TimeObject(Instant(1763165760LL * 1000000), TimeZone(0)))).Str(),
         Document("UIToClient",
                  "\n\t<RemindTime>\n\t\t<TimeObject>Sat, 15 Nov 2025 00:16:00 +0000</TimeObject>\n\t</RemindTime>")},
        {"RemindInterval", ConvertToUIToClientXML(RemindInterval(TimeInterval(90LL * 1000000))).Str(),
         Document("UIToClient", "\n\t<RemindInterval>\n\t\t<TimeInterval>PT1M30S</TimeInterval>\n\t</RemindInterval>")},
        {"error, font", ConvertToXML(ClientUIErrorMessage(ClientUIErrorMessage::FontError, "noFont (Unable to load any usable fontset)")).Str(),
         Document("ClientToUI",
                  "\n\t<ClientUIErrorMessage>\n\t\t<DebugString>noFont (Unable to load any usable fontset)</DebugString>"
                  "\n\t\t<ErrorCode>1</ErrorCode>\n\t</ClientUIErrorMessage>")},
        // Markup in a text travels as CDATA, unless the text holds the CDATA closer.
        {"error, dialog, markup", ConvertToXML(ClientUIErrorMessage(ClientUIErrorMessage::DialogError, "a & b")).Str(),
         Document("ClientToUI",
                  "\n\t<ClientUIErrorMessage>\n\t\t<DebugString><![CDATA[a & b]]></DebugString>"
                  "\n\t\t<ErrorCode>2</ErrorCode>\n\t</ClientUIErrorMessage>")},
        {"error, CDATA closer", ConvertToXML(ClientUIErrorMessage(ClientUIErrorMessage::DialogError, "<x>]]>")).Str(),
         Document("ClientToUI",
                  "\n\t<ClientUIErrorMessage>\n\t\t<DebugString>&lt;x&gt;]]&gt;</DebugString>"
                  "\n\t\t<ErrorCode>2</ErrorCode>\n\t</ClientUIErrorMessage>")},
        {"RemoveRequest", ConvertToXML(RemoveRequest(RemoveRequest::Message, 9)).Str(),
         Document("ClientToUI",
                  "\n\t<RemoveRequest>\n\t\t<RemoveType>Message</RemoveType>\n\t\t<ID>9</ID>\n\t</RemoveRequest>")},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(c.actual, c.expected);
    }
}

XMLElement Parse(const std::string& text) {
    std::unique_ptr<XMLElement> root = SimpleXML::Parse(text);
    EXPECT_NE(root, nullptr) << text;
    return root ? *root : XMLElement();
}

template <class Record>
Record Decode(const std::string& body, Record record = Record()) {
    XMLLoad(Parse("<R>" + body + "</R>"), record);
    return record;
}

TEST(FieldDecoding, BooleansAreLenientOnPurpose) {
    struct Case {
        const char* text;
        bool value;
    };
    const Case cases[] = {
        {"<Cancellable>true</Cancellable>", true},  {"<Cancellable>0</Cancellable>", false},
        {"<Cancellable>false</Cancellable>", false}, {"<Cancellable></Cancellable>", true},
        {"<Cancellable>False</Cancellable>", true},
        {"", false},  // missing: the default stays
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(Decode<ActionRequest>(c.text).cancellable, c.value);
    }
}

TEST(FieldDecoding, NumeralsNamesAndTimesThrowTheirErrors) {
    EXPECT_THROW(Decode<ActionRequest>("<ID> 12</ID>"), NotANumeral);
    EXPECT_THROW(Decode<InitialUISettings>("<TrayMode>4294967296</TrayMode>"), NumeralTooLarge);  // 32 bits
    EXPECT_EQ(Decode<InitialUISettings>("<TrayMode>4294967295</TrayMode>").trayMode, 4294967295ul);
    EXPECT_THROW(Decode<FileTransfer>("<FileName>a/b</FileName>"), IllegalFileName);
    EXPECT_THROW(Decode<ActionRequest>("<Deadline></Deadline>"), ParsingFailure);  // present but empty
    EXPECT_THROW(Decode<MessageRequest>("<Timeout></Timeout>"), ExceptionPL);
}

TEST(RecordDecoding, MissingFieldsKeepDefaultsAndTheLastRepeatWins) {
    const ActionRequest action = Decode<ActionRequest>("<ID>1</ID><Title>first</Title><ID>2</ID><Title>second</Title>");
    EXPECT_EQ(action.id, 2u);
    EXPECT_EQ(action.title, SharedUString<UTF8>("second"));
    EXPECT_EQ(action.shortDescription, SharedUString<UTF8>());

    const InitialUISettings settings = Decode<InitialUISettings>("");
    EXPECT_TRUE(settings.allowSnooze);
    EXPECT_FALSE(settings.useLocale);
    EXPECT_TRUE(settings.remindTime.IsNull());

    const RemoveRequest remove = Decode<RemoveRequest>("");
    EXPECT_EQ(remove.type, RemoveRequest::All);
}

TEST(RecordDecoding, AbsentOptionalBecomesEmptyEvenIfItHeldAValue) {
    ActionRequest held;
    held.preview = SharedUString<UTF8>("old");
    EXPECT_TRUE(Decode<ActionRequest>("<ID>1</ID>", held).preview.IsNull());
    const ActionRequest present = Decode<ActionRequest>("<Preview></Preview><Preview>b</Preview>");
    ASSERT_FALSE(present.preview.IsNull());
    EXPECT_EQ(present.preview.Get(), SharedUString<UTF8>("b"));
}

TEST(RecordDecoding, FieldsBeforeAFailingOneKeepTheirNewValues) {
    // The body reads ID and Title before Deadline, and the flags after it.
    ActionRequest action;
    XMLElement element = Parse("<R><Restart>true</Restart><Deadline>soon</Deadline><Title>t</Title><ID>5</ID></R>");
    EXPECT_THROW(XMLSerialize(element, action), ParsingFailure);
    EXPECT_EQ(action.id, 5u);
    EXPECT_EQ(action.title, SharedUString<UTF8>("t"));
    EXPECT_FALSE(action.restart);
}

TEST(RecordDecoding, RepeatedSequenceElementsAppendInDocumentOrder) {
    InitializationInfo info;
    info.supportFiles.push_back(FileTransfer{FileName("kept"), FileName(), ""});
    XMLSerialize(Parse("<I><SupportFiles><FileName>a</FileName></SupportFiles><Other></Other>"
                       "<SupportFiles><FileName>b</FileName></SupportFiles>"
                       "<SupportFiles><FileName>c</FileName></SupportFiles></I>"),
                 info);
    ASSERT_EQ(info.supportFiles.size(), 4u);
    EXPECT_EQ(info.supportFiles[0].fileName.Text(), "kept");
    EXPECT_EQ(info.supportFiles[1].fileName.Text(), "a");
    EXPECT_EQ(info.supportFiles[3].fileName.Text(), "c");
}

InitializationInfo Delivering(std::initializer_list<std::pair<const char*, const char*>> files) {
    InitializationInfo info;
    for (const auto& file : files) {
        info.supportFiles.push_back(FileTransfer{FileName(file.first), FileName(file.second), file.first});
    }
    return info;
}

std::string Found(NullOrConstRef<FileTransfer> file) {
    return file ? file->content : std::string("(none)");
}

TEST(SupportFileLookUps, OnlyTopLevelFilesCountAndCaseIsIgnored) {
    const InitializationInfo info = Delivering(
        {{"_brand.xlat", "sub"}, {"_BRAND.XLAT", ""}, {"_brand.xlat", ""}});
    EXPECT_EQ(Found(info.BrandTranslation()), "_BRAND.XLAT");
}

TEST(SupportFileLookUps, LocalizedNamesPreferTheFullLocale) {
    struct Case {
        const char* what;
        InitializationInfo info;
        const char* full;
        const char* language;
        const char* brand;
        const char* general;
    };
    const Case cases[] = {
        {"both forms delivered", Delivering({{"_brandde.xlat", ""}, {"_brandde_DE.xlat", ""}, {"de.xlat", ""}, {"de_DE.xlat", ""}}),
         "de_DE", "de", "_brandde_DE.xlat", "de_DE.xlat"},
        {"only the language", Delivering({{"_brandde.xlat", ""}, {"DE.xlat", ""}}), "de_DE", "de", "_brandde.xlat",
         "DE.xlat"},
        {"nothing for the locale", Delivering({{"_brand.xlat", ""}}), "de_DE", "de", "(none)", "(none)"},
        {"no locale at all", Delivering({{".xlat", ""}}), "", "", "(none)", "(none)"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const FileName full(c.full);
        const FileName language(c.language);
        EXPECT_EQ(Found(c.info.LocalizedBrandTranslation(full, language)), c.brand);
        EXPECT_EQ(Found(c.info.GeneralLocalization(full, language)), c.general);
    }
}

}  // namespace
