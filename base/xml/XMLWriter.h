#pragma once

// Writes an XML document piece by piece into a text receiver, without ever
// building a tree. Every message to the client is written with it.
//
// Layout: in the indented style each start tag begins a new line, indented by
// one tab per open ancestor; text stays on the line of its element; an end tag
// that follows an end tag gets its own line, indented like its start tag. An
// empty element is written as a start tag and an end tag: the self-closing
// form is never produced, since our own reader does not understand it.

#include <cstddef>
#include <vector>

#include "base/unicode/UString.h"
#include "base/unicode/UTextReceiver.h"

class XMLElement;

class XMLWriter {
public:
    // How much white space the writer adds between tags.
    struct XMLFormatStyle {
        enum Mode : unsigned {
            Indented = 0,   // line feeds and tab indentation
            LineFeeds = 1,  // line feeds only
            Compact = 2,    // nothing added; every larger value means the same
        };
        constexpr XMLFormatStyle(unsigned formatMode = Indented) : mode(formatMode) {}
        unsigned mode;
    };

    enum EncodingDeclaration : unsigned {
        WithEncoding = 0,     // <?xml version="1.0" encoding="UTF-8"?>
        WithoutEncoding = 1,  // <?xml version="1.0"?>
    };

    XMLWriter(UTextReceiver<UTF8>& receiver, const XMLFormatStyle& style);
    XMLWriter(const XMLWriter&) = delete;
    XMLWriter& operator=(const XMLWriter&) = delete;

    // Starts the receiver and writes the declaration, with no line break after it.
    void BeginDocument(EncodingDeclaration declaration);
    // Closes every element still open, innermost first, then ends the receiver.
    void EndDocument();

    void BeginElement(UStringRef<UTF8> name);
    void BeginElement(const char* name);
    // Must come straight after BeginElement or another AddAttribute: the
    // writer does not check that a start tag is open.
    void AddAttribute(UStringRef<UTF8> name, UStringRef<UTF8> value);
    void AddAttribute(const char* name, UStringRef<UTF8> value);
    // Character data, escaped.
    void WriteString(UStringRef<UTF8> text);
    // The text unchanged inside one CDATA section. A "]]>" in it would end the
    // section early; callers must not pass one.
    void WriteCData(UStringRef<UTF8> text);
    // Closes the innermost open element; does nothing when none is open.
    void EndElement();

    // The element, its attributes in key order, its text, then its children.
    void WriteXMLElement(const XMLElement& element);

    // The steps around any content: close an open start tag and, after an end
    // tag, break the line; afterwards note that text was written.
    void BeginWritingTagContent();
    void AfterWritingTagContent();

    // Whether "<", "&" and ">" in text are escaped. On as constructed.
    bool EscapeText() const noexcept { return escapeText_; }
    void SetEscapeText(bool on) noexcept { escapeText_ = on; }
    // Whether carriage returns and line feeds in text are escaped as character
    // references (attribute values always escape them). Off as constructed.
    bool EscapeLineBreaks() const noexcept { return escapeLineBreaks_; }
    void SetEscapeLineBreaks(bool on) noexcept { escapeLineBreaks_ = on; }

    std::size_t Depth() const noexcept { return openElements_.size(); }

private:
    enum class State : unsigned char {
        StartTagOpen = 1,    // "<name" written, attributes may follow
        ContentBegun = 2,    // the start tag was closed
        TextWritten = 3,
        EndTagWritten = 4,
    };

    void OpenElement(SharedUString<UTF8> name);
    void Put(UStringRef<UTF8> piece) { receiver_.AddText(piece); }
    void CloseStartTag();
    void BreakLine(std::size_t tabs);
    void PutEscaped(UStringRef<UTF8> text, bool markup, bool quote, bool lineBreaks);

    UTextReceiver<UTF8>& receiver_;
    unsigned mode_;
    bool escapeText_ = true;
    bool escapeLineBreaks_ = false;
    std::vector<SharedUString<UTF8>> openElements_;  // innermost last
    State state_ = State::ContentBegun;
};
