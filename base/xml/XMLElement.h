#pragma once

#include <map>
#include <memory_resource>
#include <string>
#include <vector>

#include "base/Exceptions.h"
#include "base/unicode/UString.h"

class NoSuchChildElement : public DebuggableException {};
class NoSuchAttribute : public DebuggableException {};
// Raised by readers of element text that find it malformed.
class FormatError : public DebuggableException {};

// One parsed element: its name, its attributes, its child elements in
// document order, and all character data directly inside it, concatenated
// and untrimmed (so the line breaks and tabs between children are kept).
// A value type: copies are deep, and made in the heap. The children and the
// text come from the memory resource the element was made with (a document's
// arena, see XMLArena), and a moved element keeps it.
class XMLElement {
public:
    using AttributeMap = std::map<SharedUString<UTF8>, SharedUString<UTF8>>;

    XMLElement() = default;
    XMLElement(const XMLElement&) = default;
    XMLElement(XMLElement&&) noexcept = default;
    XMLElement& operator=(const XMLElement&) = default;
    XMLElement& operator=(XMLElement&&) noexcept = default;
    // Tears the tree down without recursion: a hostile document can nest
    // hundreds of thousands of elements in one frame.
    ~XMLElement();
    XMLElement(UStringRef<UTF8> name, const AttributeMap& attributes);
    XMLElement(const char* name, const AttributeMap& attributes);
    // Shares the name's buffer, so a reader can give every element of the same
    // name one copy of it.
    XMLElement(SharedUString<UTF8> name, const AttributeMap& attributes);
    XMLElement(SharedUString<UTF8> name, const AttributeMap& attributes, std::pmr::memory_resource* resource);

    const SharedUString<UTF8>& Name() const noexcept { return name_; }
    const AttributeMap& Attributes() const noexcept { return attributes_; }
    const std::pmr::vector<XMLElement>& Children() const noexcept { return children_; }

    // The first child with this name, compared byte for byte.
    const XMLElement& GetChildElement(UStringRef<UTF8> name) const;

    bool HasAttribute(UStringRef<UTF8> name) const;
    bool HasAttribute(const char* name) const;
    UStringRef<UTF8> GetAttribute(UStringRef<UTF8> name) const;
    UStringRef<UTF8> GetAttribute(const char* name) const;

    UStringRef<UTF8> GetValue() const noexcept { return UStringRef<UTF8>(text_); }

    // Appends a copy and returns the stored child, which stays valid until the
    // next child is added.
    XMLElement& AddChildElement(const XMLElement& child);
    XMLElement& AddChildElement(XMLElement&& child);
    void AppendCharacters(UStringRef<UTF8> text);

    friend bool operator==(const XMLElement& a, const XMLElement& b);
    friend bool operator!=(const XMLElement& a, const XMLElement& b) { return !(a == b); }

private:
    SharedUString<UTF8> name_;
    AttributeMap attributes_;
    std::pmr::vector<XMLElement> children_;
    std::pmr::string text_;
};
