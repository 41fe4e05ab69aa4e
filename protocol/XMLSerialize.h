#pragma once

// How any record field is written as XML and read back.
//
// A record lists its fields once, in one body
//
//     template <class Archive> void XMLSerialize(Archive& archive, ActionTaken& record) {
//         XMLSerialize(archive, "IsCancel", record.isCancel);
//         ...
//     }
//
// and the archive decides the direction: an XMLWriter writes each field as a
// child element, an XMLElement fills each field from the child of that name.
// Every field is one child element whose text is the value; nothing travels
// as an attribute.
//
// Reading never fails on a missing element (the field keeps its default, an
// optional becomes empty) and takes the last of repeated elements. It throws
// only when a value's text is malformed, leaving the fields read so far.

#include <string>
#include <vector>

#include "base/files/FileLocation.h"
#include "base/time/Instant.h"
#include "base/time/TimeObject.h"
#include "base/unicode/UString.h"
#include "base/xml/XMLElement.h"
#include "base/xml/XMLWriter.h"
#include "protocol/NullOr.h"

// ---- Content writers: the text of one value ----

void XMLSave(XMLWriter& writer, bool value);
void XMLSave(XMLWriter& writer, unsigned long value);
void XMLSave(XMLWriter& writer, unsigned long long value);
void XMLSave(XMLWriter& writer, UStringRef<UTF8> value);
void XMLSave(XMLWriter& writer, const SharedUString<UTF8>& value);
void XMLSave(XMLWriter& writer, const AutoUString<UTF8>& value);
void XMLSave(XMLWriter& writer, const CopiedUString<UTF8>& value);
// Text in the locale's encoding, written as UTF-8.
void XMLSave(XMLWriter& writer, const std::string& value);
void XMLSave(XMLWriter& writer, const FileLocation& value);
void XMLSave(XMLWriter& writer, const FileName& value);
void XMLSave(XMLWriter& writer, const TimeObject& value);
void XMLSave(XMLWriter& writer, const TimeInterval& value);

// ---- Content readers: one value from an element's text ----

// Deliberately lenient: only "0" and "false" are false.
void XMLLoad(const XMLElement& element, bool& value);
void XMLLoad(const XMLElement& element, unsigned long& value);
void XMLLoad(const XMLElement& element, unsigned long long& value);
void XMLLoad(const XMLElement& element, SharedUString<UTF8>& value);
void XMLLoad(const XMLElement& element, AutoUString<UTF8>& value);
void XMLLoad(const XMLElement& element, CopiedUString<UTF8>& value);
// The UTF-8 text converted to the locale's encoding.
void XMLLoad(const XMLElement& element, std::string& value);
void XMLLoad(const XMLElement& element, FileLocation& value);
void XMLLoad(const XMLElement& element, FileName& value);
void XMLLoad(const XMLElement& element, TimeObject& value);
void XMLLoad(const XMLElement& element, TimeInterval& value);

// ---- Records: the content is the record's own body ----

template <class Record>
void XMLSave(XMLWriter& writer, const Record& record) {
    // The body is shared with reading, so it takes the record by reference;
    // writing only reads it.
    XMLSerialize(writer, const_cast<Record&>(record));
}

template <class Record>
void XMLLoad(const XMLElement& element, Record& record) {
    XMLSerialize(element, record);
}

// ---- Writing a named field ----

template <class T>
void XMLSave(XMLWriter& writer, UStringRef<UTF8> name, const T& value) {
    writer.BeginElement(name);
    XMLSave(writer, value);
    writer.EndElement();
}

// An empty optional writes nothing.
template <class T>
void XMLSave(XMLWriter& writer, UStringRef<UTF8> name, const NullOr<T>& value) {
    if (value) {
        XMLSave(writer, name, value.Get());
    }
}

// A sequence repeats the field's element once per item, without a wrapper.
template <class T>
void XMLSave(XMLWriter& writer, UStringRef<UTF8> name, const std::vector<T>& items) {
    for (const T& item : items) {
        XMLSave(writer, name, item);
    }
}

template <class T>
void XMLSerialize(XMLWriter& writer, UStringRef<UTF8> name, const T& value) {
    XMLSave(writer, name, value);
}

template <class T>
void XMLSerialize(XMLWriter& writer, const char* name, const T& value) {
    XMLSerialize(writer, UStringRef<UTF8>(name), value);
}

// ---- Reading a named field ----

// Every child with the name is decoded in turn, so the last one wins; with
// none, the field keeps the value it had.
template <class T>
void XMLLoad(const XMLElement& parent, UStringRef<UTF8> name, T& value) {
    for (const XMLElement& child : parent.Children()) {
        if (child.Name().Ref() == name) {
            XMLLoad(child, value);
        }
    }
}

// Each child with the name is one more item, appended in document order.
template <class T>
void XMLLoad(const XMLElement& parent, UStringRef<UTF8> name, std::vector<T>& items) {
    std::size_t count = 0;
    for (const XMLElement& child : parent.Children()) {
        count += child.Name().Ref() == name ? 1 : 0;
    }
    items.reserve(items.size() + count);
    for (const XMLElement& child : parent.Children()) {
        if (child.Name().Ref() == name) {
            T item;
            XMLLoad(child, item);
            items.push_back(item);
        }
    }
}

template <class T>
void XMLSerialize(const XMLElement& parent, UStringRef<UTF8> name, T& value) {
    XMLLoad(parent, name, value);
}

// An absent element empties the optional, whatever it held before.
template <class T>
void XMLSerialize(const XMLElement& parent, UStringRef<UTF8> name, NullOr<T>& value) {
    for (const XMLElement& child : parent.Children()) {
        if (child.Name().Ref() == name) {
            T present{};
            XMLLoad(parent, name, present);
            value = present;
            return;
        }
    }
    value = NullOr<T>::Null();
}

template <class T>
void XMLSerialize(const XMLElement& parent, const char* name, T& value) {
    XMLSerialize(parent, UStringRef<UTF8>(name), value);
}

// ---- Attribute forms (no message uses them) ----

void XMLSaveAttribute(XMLWriter& writer, UStringRef<UTF8> name, UStringRef<UTF8> value);
void XMLSaveAttribute(XMLWriter& writer, UStringRef<UTF8> name, const SharedUString<UTF8>& value);
void XMLSaveAttribute(XMLWriter& writer, UStringRef<UTF8> name, const AutoUString<UTF8>& value);
void XMLSaveAttribute(XMLWriter& writer, UStringRef<UTF8> name, const CopiedUString<UTF8>& value);
void XMLSaveAttribute(XMLWriter& writer, UStringRef<UTF8> name, bool value);

// Throws NoSuchAttribute when the attribute is missing.
void XMLLoadAttribute(const XMLElement& element, UStringRef<UTF8> name, SharedUString<UTF8>& value);
void XMLLoadAttribute(const XMLElement& element, UStringRef<UTF8> name, AutoUString<UTF8>& value);
void XMLLoadAttribute(const XMLElement& element, UStringRef<UTF8> name, CopiedUString<UTF8>& value);
// A missing attribute reads as false.
void XMLLoadAttribute(const XMLElement& element, UStringRef<UTF8> name, bool& value);
