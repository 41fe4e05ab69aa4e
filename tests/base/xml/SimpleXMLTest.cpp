#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>

#include "base/xml/SimpleXML.h"
#include "base/xml/XMLElement.h"

using namespace std::string_view_literals;

namespace {

// A tree as one line: name[attr=value,...]"text"{child,...}; "null" for none.
std::string Dump(const XMLElement& e) {
    std::string out(e.Name().View());
    const char* sep = "[";
    for (const auto& [name, value] : e.Attributes())
        out.append(std::exchange(sep, ",")).append(name.View()).append("=").append(value.View());
    if (!e.Attributes().empty()) out += ']';
    if (!e.GetValue().Empty()) out.append("\"").append(e.GetValue().View()).append("\"");
    sep = "{";
    for (const XMLElement& child : e.Children()) out.append(std::exchange(sep, ",")) += Dump(child);
    if (!e.Children().empty()) out += '}';
    return out;
}

std::string Dump(const std::unique_ptr<XMLElement>& root) { return root ? Dump(*root) : "null"; }

struct Case {
    const char* what;
    std::string_view doc;
    std::string_view tree;
};

const Case kCases[] = {
    {"apostrophe value, escape in text", "<a x='1'>t&amp;u</a>", "a[x=1]\"t&u\""},
    {"escapes in a double-quoted value", "<a x=\"&lt;b&amp;c&quot;&gt;\"></a>", "a[x=<b&c\">]"},
    {"markup bytes inside a value", "<a x='<b>' y=\"it's\">v</a>", "a[x=<b>,y=it's]\"v\""},
    {"duplicate attribute keeps the first", "<a x='1' x='2'></a>", "a[x=1]"},
    {"bytes before the quote begin the value", "<a x= '1'></a>", "a[x= 1]"},
    {"question marks skipped between attributes", "<a ?x='1' ?>v</a>", "a[x=1]\"v\""},
    {"comment inside an element", "<a>x<!-- <b>c</b> -->y</a>", "a\"xy\""},
    {"comment closed by three dashes", "<a>x<!-- c --->y</a>", "a\"xy\""},
    {"opening dashes do not close the comment", "<a><!--->x-->y</a>", "a\"y\""},
    {"empty-element form alone yields no root", "<a/>", "null"},
    {"CDATA keeps escapes as written", "<a><![CDATA[&amp;<b>]]></a>", "a\"&amp;<b>\""},
    {"CDATA ends at the first ]]>", "<a>x<![CDATA[ ]] ]> ]]]>y</a>", "a\"x ]] ]> ]y\""},
    {"hex reference to a tab", "<a>&#x9;</a>", "a\"\t\""},
    {"hex reference gives a lone byte", "<a>&#xE9;</a>", "a\"\xE9\""},
    {"hex reference of 256 stays as written", "<a>&#x100;</a>", "a\"&#x100;\""},
    {"apos, decimal and unknown escapes stay", "<a>&apos;&#10;&nbsp;</a>", "a\"&apos;&#10;&nbsp;\""},
    {"hex digits end at a non-digit, none is 0, only a small x, capped before they wrap",
     "<a>&#x4a;&#x41z;&#x;&#X41;&#x100000041;&;</a>"sv, "a\"JA\0&#X41;&#x100000041;&;\""sv},
    {"escape runs to the semicolon across tags", "<a>x &y<b>;z</a>", "a\"x &y<b>;z\""},
    {"declaration opens no element",
     "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<ClientToUI>x</ClientToUI>", "ClientToUI\"x\""},
    {"processing instruction inside an element", "<a>1<?pi x='y'?>2</a>", "a\"12\""},
    {"line breaks and tabs between children",
     "<r>\n\t<a>1</a>\n\t<b>\n\t\t<c>2</c>\n\t</b>\n</r>", "r\"\n\t\n\t\n\"{a\"1\",b\"\n\t\t\n\t\"{c\"2\"}}"},
    {"one dash dropped from a name", "<a-b>x</a-b>", "ab\"x\""},
    {"two separate dashes open a comment", "<r><a-b-c>x</a>y-->z</r>", "r\"z\""},
    {"tab is part of the name", "<a\tx='1'>v</a>", "a\tx='1'\"v\""},
    {"empty-element form closes the parent", "<r><p><a/>x</p>y</r>", "r\"x\"{p}"},
    {"slash after an attribute begins a name", "<r><a x='1'/>t</a>u='2'>v</r>", "r{a[/>t</a>u=2,x=1]\"v\"}"},
    {"second top-level element replaces the first", "<a>1</a><b>2</b>", "b\"2\""},
    {"data outside every element dropped", "x<a>1</a>y", "a\"1\""},
    {"end tag names not compared", "<a><b>1</c>2</d>", "a\"2\"{b\"1\"}"},
    {"surplus end tags ignored", "</x><a>1</a></a></a>", "a\"1\""},
    {"unclosed root still the root", "<a><b>1", "a{b}"},
    {"data reported only when a tag follows", "<a>text", "a"},
    {"unfinished start tag", "<a><b x='1", "a"},
    {"empty document", "", "null"},
    {"NUL bytes are ordinary", "<a>x\0y</a>"sv, "a\"x\0y\""sv},
};

TEST(SimpleXML, ParseTable) {
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(Dump(SimpleXML::Parse(UStringRef<UTF8>(c.doc))), c.tree);
    }
}

// More names than the reader remembers at once, each used twice.
TEST(SimpleXML, ManyDistinctNamesKeepTheirOwn) {
    std::string doc = "<r>";
    for (int i = 0; i < 600; ++i) doc += "<e" + std::to_string(i % 300) + "></x>";
    auto root = SimpleXML::Parse(UStringRef<UTF8>(doc + "</r>"));
    ASSERT_TRUE(root);
    ASSERT_EQ(root->Children().size(), 600u);
    for (std::size_t i = 0; i < 600; ++i)
        EXPECT_EQ(root->Children()[i].Name().View(), "e" + std::to_string(i % 300));
}

TEST(XMLElement, ChildLookUpsAreExactTakeTheFirstAndThrow) {
    XMLElement root("ClientToUI", {});
    root.AddChildElement(XMLElement("ActionRequest", {}));
    root.AddChildElement(XMLElement("ActionRequest", {}));
    EXPECT_EQ(&root.GetChildElement("ActionRequest"), &root.Children().front());
    EXPECT_THROW(root.GetChildElement("actionrequest"), NoSuchChildElement);
    EXPECT_THROW(root.GetChildElement(""), NoSuchChildElement);
}

TEST(XMLElement, AFrameOfNestedTagsIsReadAndFreedWithoutRecursion) {
    // The largest frame the pipe accepts, all start tags: 699,050 levels.
    std::string nested;
    while (nested.size() + 3 <= 2097152) nested += "<a>";
    std::unique_ptr<XMLElement> root = SimpleXML::Parse(nested);
    ASSERT_NE(root, nullptr);
    std::size_t depth = 1;
    for (const XMLElement* e = root.get(); !e->Children().empty(); e = &e->Children().front()) ++depth;
    EXPECT_EQ(depth, nested.size() / 3);
    root.reset();
}

}  // namespace
