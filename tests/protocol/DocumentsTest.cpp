#include "protocol/Documents.h"

#include <string>

#include <gtest/gtest.h>

#include "protocol/ClientRequests.h"
#include "protocol/UIReports.h"

namespace {

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
        {"ActionTaken", ConvertToUIToClientXML(ActionTaken(42, false)).Str(),
         Document("UIToClient",
                  "\n\t<ActionTaken>\n\t\t<IsCancel>false</IsCancel>\n\t\t<IsOffer>false</IsOffer>"
                  "\n\t\t<ID>42</ID>\n\t</ActionTaken>")},
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
        {"RemindInterval counted back from a deadline", ConvertToUIToClientXML(RemindInterval(TimeInterval(-900LL * 1000000))).Str(),
         Document("UIToClient", "\n\t<RemindInterval>\n\t\t<TimeInterval>-PT15M</TimeInterval>\n\t</RemindInterval>")},
        {"error, no error", ConvertToXML(ClientUIErrorMessage()).Str(),
         Document("ClientToUI",
                  "\n\t<ClientUIErrorMessage>\n\t\t<DebugString></DebugString>\n\t\t<ErrorCode>0</ErrorCode>"
                  "\n\t</ClientUIErrorMessage>")},
        {"error, font", ConvertToXML(ClientUIErrorMessage(ClientUIErrorMessage::FontError, "noFont (Unable to load any usable fontset)")).Str(),
         Document("ClientToUI",
                  "\n\t<ClientUIErrorMessage>\n\t\t<DebugString>noFont (Unable to load any usable fontset)</DebugString>"
                  "\n\t\t<ErrorCode>1</ErrorCode>\n\t</ClientUIErrorMessage>")},
        {"error, dialog", ConvertToXML(ClientUIErrorMessage(ClientUIErrorMessage::DialogError, "ActionRequestDialog")).Str(),
         Document("ClientToUI",
                  "\n\t<ClientUIErrorMessage>\n\t\t<DebugString>ActionRequestDialog</DebugString>"
                  "\n\t\t<ErrorCode>2</ErrorCode>\n\t</ClientUIErrorMessage>")},
        {"RemoveRequest", ConvertToXML(RemoveRequest(RemoveRequest::Message, 9)).Str(),
         Document("ClientToUI",
                  "\n\t<RemoveRequest>\n\t\t<RemoveType>Message</RemoveType>\n\t\t<ID>9</ID>\n\t</RemoveRequest>")},
        {"RemoveRequest with a type outside the four", ConvertToXML(RemoveRequest(static_cast<RemoveRequest::RemoveType>(7), 9)).Str(),
         Document("ClientToUI", "\n\t<RemoveRequest>\n\t\t<ID>9</ID>\n\t</RemoveRequest>")},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(c.actual, c.expected);
    }
}

TEST(OutgoingDocuments, MarkupInTextTravelsAsCDataUnlessItCannot) {
    EXPECT_EQ(ConvertToXML(ClientUIErrorMessage(ClientUIErrorMessage::DialogError, "a & b")).Str(),
              Document("ClientToUI",
                       "\n\t<ClientUIErrorMessage>\n\t\t<DebugString><![CDATA[a & b]]></DebugString>"
                       "\n\t\t<ErrorCode>2</ErrorCode>\n\t</ClientUIErrorMessage>"));
    EXPECT_EQ(ConvertToXML(ClientUIErrorMessage(ClientUIErrorMessage::DialogError, "<x>]]>")).Str(),
              Document("ClientToUI",
                       "\n\t<ClientUIErrorMessage>\n\t\t<DebugString>&lt;x&gt;]]&gt;</DebugString>"
                       "\n\t\t<ErrorCode>2</ErrorCode>\n\t</ClientUIErrorMessage>"));
}

}  // namespace
