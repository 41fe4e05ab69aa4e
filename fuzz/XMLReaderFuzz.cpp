// Reads arbitrary bytes as a client document, whole and cut in two at a place
// the input chooses; both must give the same tree.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

#include "base/xml/SimpleXML.h"
#include "base/xml/XMLTreeParser.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const char* bytes = reinterpret_cast<const char*>(data);
    std::unique_ptr<XMLElement> whole = SimpleXML::Parse(UStringRef<UTF8>(bytes, size));
    XMLTreeParser tree;
    SimpleXML::SAXParser sax(tree);
    SimpleXMLParserPL machine(sax);
    unsigned cut = size == 0 ? 0 : static_cast<unsigned>(data[0] % (size + 1));
    machine.Parse(bytes, cut);
    machine.Parse(bytes + cut, static_cast<unsigned>(size - cut));
    std::unique_ptr<XMLElement> pieces = tree.TakeRoot();
    if ((whole == nullptr) != (pieces == nullptr) || (whole && *whole != *pieces)) std::abort();
    return 0;
}
