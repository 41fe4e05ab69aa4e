#include "base/xml/XMLElement.h"

#include <gtest/gtest.h>

#include "base/xml/SimpleXML.h"

namespace {

TEST(XMLElement, LookUpsAreExactAndThrowByType) {
    XMLElement root("ClientToUI", {});
    root.AddChildElement(XMLElement("ActionRequest", {{"kind", "first"}, {"", "empty name"}}));
    root.AddChildElement(XMLElement("ActionRequest", {{"kind", "second"}}));
    const XMLElement& first = root.GetChildElement("ActionRequest");
    EXPECT_EQ(first.GetAttribute("kind"), "first");
    EXPECT_EQ(first.GetAttribute(""), "empty name");
    EXPECT_TRUE(first.HasAttribute(UStringRef<UTF8>("kind")));
    EXPECT_FALSE(first.HasAttribute("Kind"));
    EXPECT_THROW(first.GetAttribute("Kind"), NoSuchAttribute);
    EXPECT_THROW(first.GetAttribute(UStringRef<UTF8>("y")), NoSuchAttribute);
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
