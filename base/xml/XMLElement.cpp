#include "base/xml/XMLElement.h"

#include <iterator>
#include <utility>

XMLElement::XMLElement(UStringRef<UTF8> name, const AttributeMap& attributes)
    : name_(name), attributes_(attributes) {}

XMLElement::XMLElement(const char* name, const AttributeMap& attributes)
    : XMLElement(UStringRef<UTF8>(name), attributes) {}

XMLElement::XMLElement(SharedUString<UTF8> name, const AttributeMap& attributes)
    : name_(std::move(name)), attributes_(attributes) {}

XMLElement::XMLElement(SharedUString<UTF8> name, const AttributeMap& attributes,
                       std::pmr::memory_resource* resource)
    : name_(std::move(name)), attributes_(attributes), children_(resource), text_(resource) {}

XMLElement::~XMLElement() {
    if (children_.empty()) {
        return;
    }
    // Descendants move onto one flat list, so each element is destroyed
    // with no children left and the stack never grows with the depth. The
    // list is the heap's for a moment: in an arena its growth would stay
    // until the arena goes.
    std::vector<XMLElement> pending(std::make_move_iterator(children_.begin()),
                                    std::make_move_iterator(children_.end()));
    children_.clear();
    while (!pending.empty()) {
        XMLElement last = std::move(pending.back());
        pending.pop_back();
        for (XMLElement& child : last.children_) {
            pending.push_back(std::move(child));
        }
        last.children_.clear();
    }
}

const XMLElement& XMLElement::GetChildElement(UStringRef<UTF8> name) const {
    for (const XMLElement& child : children_) {
        if (child.name_.Ref() == name) {
            return child;
        }
    }
    throw NoSuchChildElement();
}

bool XMLElement::HasAttribute(UStringRef<UTF8> name) const {
    return attributes_.find(SharedUString<UTF8>(name)) != attributes_.end();
}

bool XMLElement::HasAttribute(const char* name) const {
    return HasAttribute(UStringRef<UTF8>(name));
}

UStringRef<UTF8> XMLElement::GetAttribute(UStringRef<UTF8> name) const {
    auto found = attributes_.find(SharedUString<UTF8>(name));
    if (found == attributes_.end()) {
        throw NoSuchAttribute();
    }
    return found->second.Ref();
}

UStringRef<UTF8> XMLElement::GetAttribute(const char* name) const {
    return GetAttribute(UStringRef<UTF8>(name));
}

XMLElement& XMLElement::AddChildElement(const XMLElement& child) {
    children_.push_back(child);
    return children_.back();
}

XMLElement& XMLElement::AddChildElement(XMLElement&& child) {
    children_.push_back(std::move(child));
    return children_.back();
}

void XMLElement::AppendCharacters(UStringRef<UTF8> text) {
    text_.append(text.View());
}

bool operator==(const XMLElement& a, const XMLElement& b) {
    return a.name_ == b.name_ && a.attributes_ == b.attributes_ && a.text_ == b.text_ &&
           a.children_ == b.children_;
}
