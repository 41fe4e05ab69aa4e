#include "base/xml/XMLWriter.h"

#include <gtest/gtest.h>
#include <libxml/parser.h>

#include <memory>
#include <random>
#include <string>
#include <string_view>

#include "base/unicode/UTextReceiver.h"
#include "base/xml/SimpleXML.h"
#include "base/xml/XMLElement.h"

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

// Legal text with markup characters and multi-byte UTF-8. The last piece is a
// carriage return in attribute values, where it must come back as it was.
const char* kPieces[] = {"a", "Zq", "09", " ", "<", "&", ">", "\"", "'", "]]>", "&amp;",
                         "\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9D\x84\x9E", "\n", "\t"};
constexpr int kPieceCount = sizeof kPieces / sizeof kPieces[0];

struct TreeMaker {
    std::mt19937 rng{20240611};

    int Pick(int below) { return std::uniform_int_distribution<int>(0, below - 1)(rng); }

    std::string Text(const char* last) {
        std::string text;
        for (int n = Pick(8); n > 0; --n) {
            const int i = Pick(kPieceCount);
            text += i + 1 < kPieceCount ? kPieces[i] : last;
        }
        return text;
    }

    // Letters and digits only: our reader drops "-" and takes "?" for a declaration.
    std::string Name() {
        static const char kChars[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
        std::string name(1, kChars[Pick(52)]);
        for (int n = Pick(6); n > 0; --n) name += kChars[Pick(62)];
        return name;
    }

    XMLElement Make(int depth) {
        XMLElement::AttributeMap attributes;
        for (int n = Pick(4); n > 0; --n) attributes[SharedUString<UTF8>(Name())] = SharedUString<UTF8>(Text("\r"));
        XMLElement element(Name(), attributes);
        if (Pick(2)) element.AppendCharacters(Text("\t"));
        for (int n = depth > 0 ? Pick(4) : 0; n > 0; --n) element.AddChildElement(Make(depth - 1));
        return element;
    }
};

TEST(XMLWriterRandomTree, WellFormedInEveryModeAndReadBackCompact) {
    TreeMaker maker;
    for (int round = 0; round < 300; ++round) {
        const XMLElement tree = maker.Make(4);
        for (unsigned mode : {0u, 2u}) {  // the program's indented form; the compact one reads back exactly
            SCOPED_TRACE(testing::Message() << "tree " << round << ", mode " << mode);
            UStringBuilder builder;
            XMLWriter writer(builder, XMLWriter::XMLFormatStyle(mode));
            writer.BeginDocument(XMLWriter::WithEncoding);
            writer.WriteXMLElement(tree);
            writer.EndDocument();
            const std::string text = builder.TakeText();
            std::unique_ptr<xmlDoc, void (*)(xmlDoc*)> doc(
                xmlReadMemory(text.data(), static_cast<int>(text.size()), "tree.xml", "UTF-8", XML_PARSE_NONET),
                xmlFreeDoc);
            ASSERT_NE(doc, nullptr) << text;
            if (mode != 2) continue;  // a reader keeps the added line feeds and tabs as text
            std::unique_ptr<XMLElement> ours = SimpleXML::Parse(text);
            ASSERT_NE(ours, nullptr) << text;
            EXPECT_EQ(*ours, tree) << text;
        }
    }
}

}  // namespace
