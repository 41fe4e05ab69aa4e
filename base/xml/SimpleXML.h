#pragma once

// Reading a client document into an element tree: the machine's raw reports
// are turned into the library's string types and handed to an XMLReceiver,
// which XMLTreeParser implements by building XMLElements.

#include <memory>
#include <memory_resource>

#include "base/unicode/UString.h"
#include "base/xml/SimpleXMLParserPL.h"
#include "base/xml/XMLElement.h"

class XMLReceiver {
public:
    virtual ~XMLReceiver() = default;

    virtual void StartElement(UStringRef<UTF8> name, const XMLElement::AttributeMap& attributes) = 0;
    // Closes the innermost open element, whatever the end tag's name was.
    virtual void EndElement() = 0;
    virtual void Characters(UStringRef<UTF8> text) = 0;
};

namespace SimpleXML {

// Forwards the machine's start, end and character reports to a receiver.
class SAXParser : public XMLHandler {
public:
    explicit SAXParser(XMLReceiver& receiver) : receiver_(receiver) {}

    void DoStartElement(std::string_view name, const std::vector<XMLRawAttribute>& attributes) override;
    void DoEndElement(std::string_view name) override;
    void DoCharacters(std::string_view text) override;

private:
    XMLReceiver& receiver_;
    // Reused between tags; the receiver copies what it keeps.
    XMLElement::AttributeMap attributes_;
};

// Parses a whole document. Null when it yields no root element. The tree's
// children and texts come from the resource, which must outlive it.
std::unique_ptr<XMLElement> Parse(UStringRef<UTF8> text,
                                  std::pmr::memory_resource* resource = std::pmr::get_default_resource());

}  // namespace SimpleXML
