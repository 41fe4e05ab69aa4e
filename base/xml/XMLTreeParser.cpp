#include "base/xml/XMLTreeParser.h"

#include <utility>

SharedUString<UTF8> XMLTreeParser::Intern(UStringRef<UTF8> name) {
    // FNV-1a picks the slot; a different name in it is simply replaced.
    std::size_t hash = 2166136261u;
    for (char c : name.View()) {
        hash = (hash ^ static_cast<unsigned char>(c)) * 16777619u;
    }
    SharedUString<UTF8>& slot = names_[hash % names_.size()];
    if (slot.View() != name.View()) {
        slot = SharedUString<UTF8>(name);
    }
    return slot;
}

void XMLTreeParser::StartElement(UStringRef<UTF8> name, const XMLElement::AttributeMap& attributes) {
    if (open_.empty()) {
        // A second top-level element replaces the first as the root.
        root_ = std::make_unique<XMLElement>(Intern(name), attributes, resource_);
        open_.push_back(root_.get());
    } else {
        open_.push_back(&open_.back()->AddChildElement(XMLElement(Intern(name), attributes, resource_)));
    }
}

void XMLTreeParser::EndElement() {
    // Surplus end tags, "<a/>" among them, close nothing once all are closed.
    if (!open_.empty()) {
        open_.pop_back();
    }
}

void XMLTreeParser::Characters(UStringRef<UTF8> text) {
    // Character data outside every element is dropped.
    if (!open_.empty()) {
        open_.back()->AppendCharacters(text);
    }
}

std::unique_ptr<XMLElement> XMLTreeParser::TakeRoot() {
    open_.clear();
    return std::move(root_);
}
