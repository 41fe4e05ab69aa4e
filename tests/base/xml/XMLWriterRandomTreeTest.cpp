#include <gtest/gtest.h>
#include <libxml/parser.h>

#include <memory>
#include <random>
#include <string>

#include "base/unicode/UTextReceiver.h"
#include "base/xml/SimpleXML.h"
#include "base/xml/XMLElement.h"
#include "base/xml/XMLWriter.h"

namespace {

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
        for (unsigned mode : {0u, 1u, 2u}) {
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
