#include "base/xml/SimpleXML.h"

#include <climits>
#include <cstddef>

#include "base/xml/XMLTreeParser.h"

namespace SimpleXML {

void SAXParser::DoStartElement(std::string_view name, const std::vector<XMLRawAttribute>& attributes) {
    attributes_.clear();
    for (const XMLRawAttribute& attribute : attributes) {
        // A repeated name keeps the value it was first given.
        attributes_.try_emplace(SharedUString<UTF8>(UStringRef<UTF8>(attribute.name)),
                                UStringRef<UTF8>(attribute.value));
    }
    receiver_.StartElement(UStringRef<UTF8>(name), attributes_);
}

void SAXParser::DoEndElement(std::string_view) {
    receiver_.EndElement();
}

void SAXParser::DoCharacters(std::string_view text) {
    receiver_.Characters(UStringRef<UTF8>(text));
}

std::unique_ptr<XMLElement> Parse(UStringRef<UTF8> text, std::pmr::memory_resource* resource) {
    XMLTreeParser tree(resource);
    SAXParser sax(tree);
    SimpleXMLParserPL machine(sax);
    const char* bytes = text.Data();
    std::size_t left = text.Size();
    while (left > 0) {
        unsigned piece = left > UINT_MAX ? UINT_MAX : static_cast<unsigned>(left);
        machine.Parse(bytes, piece);
        bytes += piece;
        left -= piece;
    }
    return tree.TakeRoot();
}

}  // namespace SimpleXML
