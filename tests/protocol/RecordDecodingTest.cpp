#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "base/files/FileName.h"
#include "base/time/TimeErrors.h"
#include "base/unicode/Numerals.h"
#include "base/xml/SimpleXML.h"
#include "protocol/ActionRequest.h"
#include "protocol/ClientRequests.h"
#include "protocol/InitializationInfo.h"
#include "base/unicode/UTextReceiver.h"
#include "protocol/XMLSerialize.h"

namespace {

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
        {"<Cancellable>False</Cancellable>", true}, {"<Cancellable>FALSE</Cancellable>", true},
        {"<Cancellable>no</Cancellable>", true},    {"<Cancellable> false</Cancellable>", true},
        {"", false},  // missing: the default stays
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(Decode<ActionRequest>(c.text).cancellable, c.value);
    }
}

TEST(FieldDecoding, NumeralsAndNamesThrowTheirErrors) {
    using Check = std::function<void()>;
    struct Case {
        const char* what;
        Check check;
    };
    const Case cases[] = {
        {"blank before the ID", [] { EXPECT_THROW(Decode<ActionRequest>("<ID> 12</ID>"), NotANumeral); }},
        {"empty ID", [] { EXPECT_THROW(Decode<ActionRequest>("<ID></ID>"), NotANumeral); }},
        {"signed ID", [] { EXPECT_THROW(Decode<ActionRequest>("<ID>+1</ID>"), NotANumeral); }},
        {"ID one above 64 bits",
         [] { EXPECT_THROW(Decode<ActionRequest>("<ID>18446744073709551616</ID>"), NumeralTooLarge); }},
        {"largest ID",
         [] { EXPECT_EQ(Decode<ActionRequest>("<ID>18446744073709551615</ID>").id, 18446744073709551615ull); }},
        {"unsigned long above 32 bits",
         [] { EXPECT_THROW(Decode<InitialUISettings>("<TrayMode>4294967296</TrayMode>"), NumeralTooLarge); }},
        {"largest unsigned long",
         [] { EXPECT_EQ(Decode<InitialUISettings>("<TrayMode>4294967295</TrayMode>").trayMode, 4294967295ul); }},
        {"file name of two components",
         [] { EXPECT_THROW(Decode<FileTransfer>("<FileName>a/b</FileName>"), IllegalFileName); }},
        {"file name of 256 bytes",
         [] {
             EXPECT_THROW(Decode<FileTransfer>("<FileName>" + std::string(256, 'n') + "</FileName>"),
                          IllegalFileNameLength);
         }},
        {"empty file name", [] { EXPECT_TRUE(Decode<FileTransfer>("<FileName></FileName>").fileName.Empty()); }},
        {"present but empty deadline", [] { EXPECT_THROW(Decode<ActionRequest>("<Deadline></Deadline>"), ParsingFailure); }},
        {"present but empty timeout",
         [] { EXPECT_THROW(Decode<MessageRequest>("<Timeout></Timeout>"), ExceptionPL); }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        c.check();
    }
}

TEST(RecordDecoding, MissingFieldsKeepDefaultsAndTheLastRepeatWins) {
    const ActionRequest action = Decode<ActionRequest>("<ID>1</ID><Title>first</Title><ID>2</ID><Title>second</Title>");
    EXPECT_EQ(action.id, 2u);
    EXPECT_EQ(action.title, SharedUString<UTF8>("second"));
    EXPECT_EQ(action.shortDescription, SharedUString<UTF8>());
    EXPECT_FALSE(action.useCannedStrings);

    const InitialUISettings settings = Decode<InitialUISettings>("");
    EXPECT_EQ(settings.balloonMode, 1u);
    EXPECT_EQ(settings.trayMode, 2u);
    EXPECT_TRUE(settings.hasMainDialog);
    EXPECT_TRUE(settings.allowSnooze);
    EXPECT_TRUE(settings.displaySingleActionSummary);
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

TEST(RecordDecoding, RemoveTypeWordsAreExact) {
    struct Case {
        const char* word;
        int type;
    };
    const Case cases[] = {{"Action", RemoveRequest::Action}, {"Offer", RemoveRequest::Offer},
                          {"Message", RemoveRequest::Message}, {"All", RemoveRequest::All},
                          {"action", RemoveRequest::All}, {"", RemoveRequest::All}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.word);
        RemoveRequest request;
        XMLLoad(Parse(std::string("<R><RemoveType>") + c.word + "</RemoveType><ID>3</ID></R>"), request);
        EXPECT_EQ(request.type, c.type);
        EXPECT_EQ(request.id, 3u);
    }
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

}  // namespace

namespace {

TEST(AttributeForms, WriteEscapedAndReadBackWithTheirMissingRules) {
    UStringBuilder text;
    XMLWriter writer(text, XMLWriter::XMLFormatStyle(2));
    writer.BeginDocument(XMLWriter::EncodingDeclaration(1));
    writer.BeginElement("e");
    XMLSaveAttribute(writer, "name", SharedUString<UTF8>("a\"<b>"));
    XMLSaveAttribute(writer, "flag", true);
    writer.EndDocument();
    EXPECT_EQ(text.Text(), "<?xml version=\"1.0\"?><e name=\"a&quot;&lt;b&gt;\" flag=\"true\"></e>");

    const XMLElement element = Parse(text.Text().ToString());
    SharedUString<UTF8> name;
    bool flag = false;
    bool missingFlag = true;
    XMLLoadAttribute(element, "name", name);
    XMLLoadAttribute(element, "flag", flag);
    XMLLoadAttribute(element, "other", missingFlag);
    EXPECT_EQ(name, SharedUString<UTF8>("a\"<b>"));
    EXPECT_TRUE(flag);
    EXPECT_FALSE(missingFlag);
    EXPECT_THROW(XMLLoadAttribute(element, "other", name), NoSuchAttribute);
}

}  // namespace
