#include "client/WellFormed.h"

#include <expat.h>

#include <memory>

std::optional<XMLFault> CheckWellFormed(const std::string& document) {
    const std::unique_ptr<XML_ParserStruct, void (*)(XML_Parser)> parser(XML_ParserCreate("UTF-8"), XML_ParserFree);
    if (!parser) return XMLFault{1, "no memory for the XML parser"};
    // A document fits a frame (2 MiB), far below what an int counts.
    if (XML_Parse(parser.get(), document.data(), static_cast<int>(document.size()), XML_TRUE) == XML_STATUS_OK) {
        return std::nullopt;
    }
    return XMLFault{static_cast<int>(XML_GetCurrentLineNumber(parser.get())),
                    XML_ErrorString(XML_GetErrorCode(parser.get()))};
}
