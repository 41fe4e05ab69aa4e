#include "protocol/XMLSerialize.h"

#include <cstdint>

#include "base/time/TimeText.h"
#include "base/time/XMLTime.h"
#include "base/unicode/Local8Bit.h"
#include "base/unicode/Numerals.h"

namespace {

constexpr std::uint64_t kLargestUnsignedLong = 4294967295u;

// Markup characters make a CDATA section the cleaner form, unless the text
// would end the section early or line breaks must be escaped (a section
// cannot carry escapes).
bool NeedsCData(const XMLWriter& writer, std::string_view text) {
    return text.find_first_of("<&>") != std::string_view::npos && text.find("]]>") == std::string_view::npos &&
           !writer.EscapeLineBreaks();
}

}  // namespace

void XMLSave(XMLWriter& writer, bool value) {
    writer.WriteString(value ? "true" : "false");
}

void XMLSave(XMLWriter& writer, unsigned long value) {
    XMLSave(writer, static_cast<unsigned long long>(value));
}

void XMLSave(XMLWriter& writer, unsigned long long value) {
    writer.WriteString(MakeAsciiDecimalNumeral64(value));
}

void XMLSave(XMLWriter& writer, UStringRef<UTF8> value) {
    if (NeedsCData(writer, value.View())) {
        writer.WriteCData(value);
    } else {
        writer.WriteString(value);
    }
}

void XMLSave(XMLWriter& writer, const SharedUString<UTF8>& value) { XMLSave(writer, value.Ref()); }
void XMLSave(XMLWriter& writer, const AutoUString<UTF8>& value) { XMLSave(writer, value.Ref()); }
void XMLSave(XMLWriter& writer, const CopiedUString<UTF8>& value) { XMLSave(writer, value.Ref()); }

void XMLSave(XMLWriter& writer, const std::string& value) {
    XMLSave(writer, UnixPlatform::Local8BitToUTF8(value).Ref());
}

void XMLSave(XMLWriter& writer, const FileLocation& value) {
    XMLSave(writer, value.Path());
}

void XMLSave(XMLWriter& writer, const FileName& value) {
    XMLSave(writer, value.Text());
}

void XMLSave(XMLWriter& writer, const TimeObject& value) {
    XMLSave(writer, TimeToText(value).Ref());
}

void XMLSave(XMLWriter& writer, const TimeInterval& value) {
    XMLSave(writer, TimeIntervalToXMLDuration(value).Ref());
}

void XMLLoad(const XMLElement& element, bool& value) {
    const UStringRef<UTF8> text = element.GetValue();
    value = !(text == "0" || text == "false");
}

void XMLLoad(const XMLElement& element, unsigned long& value) {
    const std::uint64_t number = ReadAsciiDecimalNumeral64(element.GetValue());
    if (number > kLargestUnsignedLong) {
        throw NumeralTooLarge();
    }
    value = static_cast<unsigned long>(number);
}

void XMLLoad(const XMLElement& element, unsigned long long& value) {
    value = ReadAsciiDecimalNumeral64(element.GetValue());
}

void XMLLoad(const XMLElement& element, SharedUString<UTF8>& value) { value = SharedUString<UTF8>(element.GetValue()); }
void XMLLoad(const XMLElement& element, AutoUString<UTF8>& value) { value = AutoUString<UTF8>(element.GetValue()); }
void XMLLoad(const XMLElement& element, CopiedUString<UTF8>& value) { value = CopiedUString<UTF8>(element.GetValue()); }

void XMLLoad(const XMLElement& element, std::string& value) {
    value = UnixPlatform::UTF8ToLocal8Bit(element.GetValue());
}

void XMLLoad(const XMLElement& element, FileLocation& value) {
    std::string path;
    XMLLoad(element, path);
    value = MakeFileLocation(path);
}

void XMLLoad(const XMLElement& element, FileName& value) {
    std::string name;
    XMLLoad(element, name);
    value = FileName(name);
}

void XMLLoad(const XMLElement& element, TimeObject& value) {
    value = TextToTime(element.GetValue());
}

void XMLLoad(const XMLElement& element, TimeInterval& value) {
    value = XMLDurationToTimeInterval(element.GetValue());
}

void XMLSaveAttribute(XMLWriter& writer, UStringRef<UTF8> name, UStringRef<UTF8> value) {
    writer.AddAttribute(name, value);
}

void XMLSaveAttribute(XMLWriter& writer, UStringRef<UTF8> name, const SharedUString<UTF8>& value) {
    writer.AddAttribute(name, value.Ref());
}

void XMLSaveAttribute(XMLWriter& writer, UStringRef<UTF8> name, const AutoUString<UTF8>& value) {
    writer.AddAttribute(name, value.Ref());
}

void XMLSaveAttribute(XMLWriter& writer, UStringRef<UTF8> name, const CopiedUString<UTF8>& value) {
    writer.AddAttribute(name, value.Ref());
}

void XMLSaveAttribute(XMLWriter& writer, UStringRef<UTF8> name, bool value) {
    writer.AddAttribute(name, value ? "true" : "false");
}

void XMLLoadAttribute(const XMLElement& element, UStringRef<UTF8> name, SharedUString<UTF8>& value) {
    value = SharedUString<UTF8>(element.GetAttribute(name));
}

void XMLLoadAttribute(const XMLElement& element, UStringRef<UTF8> name, AutoUString<UTF8>& value) {
    value = AutoUString<UTF8>(element.GetAttribute(name));
}

void XMLLoadAttribute(const XMLElement& element, UStringRef<UTF8> name, CopiedUString<UTF8>& value) {
    value = CopiedUString<UTF8>(element.GetAttribute(name));
}

void XMLLoadAttribute(const XMLElement& element, UStringRef<UTF8> name, bool& value) {
    if (!element.HasAttribute(name)) {
        value = false;
        return;
    }
    const UStringRef<UTF8> text = element.GetAttribute(name);
    value = !(text == "0" || text == "false");
}
