#include "base/xml/XMLElement.h"

#include <gtest/gtest.h>

#include "base/xml/SimpleXML.h"

namespace {

XMLElement MakeMessage() {
    XMLElement root("ClientToUI", {});
    XMLElement first("ActionRequest", {{"kind", "first"}});
    first.AppendCharacters("one");
    root.AddChildElement(first);
    root.AddChildElement(XMLElement("ActionRequest", {{"kind", "second"}}));
    return root;
}

TEST(XMLElement, ChildLookUpFindsTheFirstByExactName) {
    XMLElement root = MakeMessage();
    EXPECT_EQ(root.GetChildElement("ActionRequest").GetAttribute("kind"), "first");
    EXPECT_THROW(root.GetChildElement("actionrequest"), NoSuchChildElement);
    EXPECT_THROW(root.GetChildElement(""), NoSuchChildElement);
}

TEST(XMLElement, AttributesInBothForms) {
    XMLElement e("a", {{"x", "1"}, {"", "empty name"}});
    EXPECT_TRUE(e.HasAttribute("x"));
    EXPECT_TRUE(e.HasAttribute(UStringRef<UTF8>("x")));
    EXPECT_FALSE(e.HasAttribute("X"));
    EXPECT_EQ(e.GetAttribute(""), "empty name");
    EXPECT_THROW(e.GetAttribute("y"), NoSuchAttribute);
    EXPECT_THROW(e.GetAttribute(UStringRef<UTF8>("y")), NoSuchAttribute);
}

TEST(XMLElement, CopiesAreDeep) {
    XMLElement original = MakeMessage();
    XMLElement copy = original;
    ASSERT_EQ(copy, original);
    copy.AppendCharacters("changed");
    XMLElement grandchild("Inner", {});
    copy.AddChildElement(grandchild);
    EXPECT_NE(copy, original);
    EXPECT_EQ(original.Children().size(), 2u);
    EXPECT_EQ(original.GetValue(), "");
}

TEST(XMLElement, AFrameOfNestedTagsIsReadAndFreedWithoutRecursion) {
    // The largest frame the pipe accepts, all start tags: 699,050 levels.
    std::string nested;
    while (nested.size() + 3 <= 2097152) {
        nested += "<a>";
    }
    std::unique_ptr<XMLElement> root = SimpleXML::Parse(nested);
    ASSERT_NE(root, nullptr);
    std::size_t depth = 1;
    for (const XMLElement* e = root.get(); !e->Children().empty(); e = &e->Children().front()) {
        ++depth;
    }
    EXPECT_EQ(depth, nested.size() / 3);
    root.reset();
}

}  // namespace
