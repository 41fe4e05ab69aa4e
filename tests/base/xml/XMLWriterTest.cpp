#include "base/xml/XMLWriter.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "base/unicode/UTextReceiver.h"

namespace {

// Plays a script of writer calls, steps separated by "|": "?0"/"?1" BeginDocument,
// "<name" BeginElement, "@name=value" AddAttribute, "'text" WriteString,
// "[text" WriteCData, ">" EndElement, "." EndDocument.
void Play(XMLWriter& w, std::string_view script) {
    while (!script.empty()) {
        const std::size_t bar = script.find('|');
        const std::string step(script.substr(0, bar));
        script.remove_prefix(bar == std::string_view::npos ? script.size() : bar + 1);
        const std::string arg = step.substr(1);
        switch (step[0]) {
        case '?': w.BeginDocument(arg == "0" ? XMLWriter::WithEncoding : XMLWriter::WithoutEncoding); break;
        case '<': w.BeginElement(arg.c_str()); break;
        case '@': w.AddAttribute(arg.substr(0, arg.find('=')).c_str(), arg.substr(arg.find('=') + 1)); break;
        case '\'': w.WriteString(arg); break;
        case '[': w.WriteCData(arg); break;
        case '>': w.EndElement(); break;
        case '.': w.EndDocument(); break;
        }
    }
}

std::string Write(unsigned mode, std::string_view script) {
    UStringBuilder builder;
    XMLWriter writer(builder, XMLWriter::XMLFormatStyle(mode));
    Play(writer, script);
    return builder.TakeText();
}

#define DECL "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
const char kMixed[] = "<r|<a|'t|>|'mid|<b|@k=v|<c|>|>|>";  // text and elements mixed

struct Case {
    const char* what;
    unsigned mode;
    const char* script;
    const char* expected;
};

const Case kCases[] = {
    {"element/two attributes", 0, "?0|<UIToClient|<Snooze|@a=1|@b=x y|.",
     DECL "\n<UIToClient>\n\t<Snooze a=\"1\" b=\"x y\"></Snooze>\n</UIToClient>"},
    {"document/closes three open", 0, "?1|<a|<b|<c|'t|.", "<?xml version=\"1.0\"?>\n<a>\n\t<b>\n\t\t<c>t</c>\n\t</b>\n</a>"},
    {"document/nothing open", 0, ">|.", ""},
    {"text/raw line breaks", 2, "'x<y&z>\"'\r\n\xC3\xA9\xE2\x82\xAC", "x&lt;y&amp;z&gt;\"'\r\n\xC3\xA9\xE2\x82\xAC"},
    {"cdata/not split", 2, "<e|[a]]>b<&|>", "<e><![CDATA[a]]>b<&]]></e>"},
    {"mixed/indented", 0, kMixed, "\n<r>\n\t<a>t</a>\nmid\n\t<b k=\"v\">\n\t\t<c></c>\n\t</b>\n</r>"},
    {"mixed/line feeds", 1, kMixed, "\n<r>\n<a>t</a>\nmid\n<b k=\"v\">\n<c></c>\n</b>\n</r>"},
    {"mixed/compact", 2, kMixed, "<r><a>t</a>mid<b k=\"v\"><c></c></b></r>"},
    {"mixed/any larger mode is compact", 9, kMixed, "<r><a>t</a>mid<b k=\"v\"><c></c></b></r>"},
};

TEST(XMLWriter, WritesExactBytes) {
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(Write(c.mode, c.script), c.expected);
    }
}

// Deeper than the run of tabs the writer hands out in one piece.
TEST(XMLWriter, IndentsBeyondForty) {
    std::string script;
    for (int i = 0; i < 40; ++i) script += "<e|";
    const std::string text = Write(0, script + ".");
    EXPECT_NE(text.find("\n" + std::string(39, '\t') + "<e></e>\n" + std::string(38, '\t') + "</e>"), std::string::npos);
    EXPECT_EQ(text.substr(text.size() - 5), "\n</e>");
}

}  // namespace
