#pragma once

#include <array>
#include <memory>
#include <memory_resource>
#include <vector>

#include "base/xml/SimpleXML.h"

// Builds the element tree from a receiver's reports.
class XMLTreeParser : public XMLReceiver {
public:
    // The elements' children and texts come from the resource, which must
    // outlive the tree; the root itself is the heap's.
    explicit XMLTreeParser(std::pmr::memory_resource* resource = std::pmr::get_default_resource())
        : resource_(resource) {}

    void StartElement(UStringRef<UTF8> name, const XMLElement::AttributeMap& attributes) override;
    void EndElement() override;
    void Characters(UStringRef<UTF8> text) override;

    // The root element, or null if no element was started. Ends the tree.
    std::unique_ptr<XMLElement> TakeRoot();

private:
    SharedUString<UTF8> Intern(UStringRef<UTF8> name);

    // Recently seen element names. A message repeats a dozen names many
    // times over, so its elements share one buffer per name instead of
    // allocating one each.
    std::array<SharedUString<UTF8>, 64> names_;
    std::pmr::memory_resource* resource_;
    std::unique_ptr<XMLElement> root_;
    // The path from the root to the innermost open element. Only the last
    // one gains children, so none of these pointers is ever invalidated.
    std::vector<XMLElement*> open_;
};
