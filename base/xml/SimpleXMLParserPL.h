#pragma once

// The byte machine that reads the client's XML subset, and the handler it
// reports to. It is not a conforming XML parser: it accepts what the client
// writes and turns anything else into some tree (or none) without failing.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// One attribute of a start tag as raw bytes, escapes already decoded.
struct XMLRawAttribute {
    std::string_view name;
    std::string_view value;
};

// Receives the machine's reports as raw bytes. The views are valid only for
// the duration of the call. Every operation does nothing by default.
class XMLHandler {
public:
    virtual ~XMLHandler() = default;

    virtual void DoStartElement(std::string_view name, const std::vector<XMLRawAttribute>& attributes);
    // The name is whatever was collected between "<" and ">"; "<a/>" reports
    // only this, with the name "a".
    virtual void DoEndElement(std::string_view name);
    // One piece of character data; consecutive pieces belong together.
    virtual void DoCharacters(std::string_view text);
    // A tag whose name begins with "?", such as the XML declaration.
    virtual void DoProcessingInstructionElement(std::string_view name,
                                                const std::vector<XMLRawAttribute>& attributes);
};

// Appends the decoded form of one escape token, "&" to ";" inclusive, to out.
void DecodeEscapeString(std::string_view token, std::string& out);

// Feeds bytes through the eleven-state machine. State is kept between calls,
// so a document may arrive in any number of pieces and gives the same reports
// (up to how character data is cut into pieces) as when fed whole.
class SimpleXMLParserPL {
public:
    explicit SimpleXMLParserPL(XMLHandler& handler) : handler_(handler) {}

    void Parse(const char* bytes, unsigned length);
    void Parse(const std::string& bytes);

private:
    enum State : unsigned char {
        kData = 0,
        kDataEscape = 1,
        kTagName = 2,
        kEndTagName = 3,
        kBetweenAttributes = 4,
        kAttributeName = 5,
        kBeforeValue = 6,
        kValue = 7,
        kValueEscape = 8,
        kComment = 9,
        kCData = 10,
    };

    // Where one attribute's name and value lie in attributeText_.
    struct AttributeSpan {
        std::size_t nameStart;
        std::size_t nameLength;
        std::size_t valueStart;
        std::size_t valueLength;
    };

    // One function per state: each consumes at least one byte of [p, end)
    // and returns where the next state takes over.
    const char* Data(const char* p, const char* end);
    const char* DataEscape(const char* p, const char* end);
    const char* TagName(const char* p, const char* end);
    const char* EndTagName(const char* p, const char* end);
    const char* BetweenAttributes(const char* p, const char* end);
    const char* AttributeName(const char* p, const char* end);
    const char* BeforeValue(const char* p, const char* end);
    const char* Value(const char* p, const char* end);
    const char* ValueEscape(const char* p, const char* end);
    const char* Comment(const char* p, const char* end);
    const char* CData(const char* p, const char* end);

    void FlushText();
    void BeginTag();
    void ReportStartTag();

    XMLHandler& handler_;
    State state_ = kData;
    char quote_ = '"';
    // Dashes seen in the current tag name, or the run of consecutive dashes
    // just before the current position inside a comment.
    std::size_t dashes_ = 0;
    // Character data (and CDATA content) not yet reported.
    std::string text_;
    // An escape token that spans calls, from "&" on.
    std::string escape_;
    // The tag name: state 2, continued by state 3 for end tags.
    std::string name_;
    // Names and values of the open tag's attributes, back to back.
    std::string attributeText_;
    std::vector<AttributeSpan> spans_;
    std::vector<XMLRawAttribute> reported_;
};
