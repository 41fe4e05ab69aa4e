#include "base/xml/SimpleXMLParserPL.h"

#include <array>
#include <climits>
#include <cstring>

void XMLHandler::DoStartElement(std::string_view, const std::vector<XMLRawAttribute>&) {}
void XMLHandler::DoEndElement(std::string_view) {}
void XMLHandler::DoCharacters(std::string_view) {}
void XMLHandler::DoProcessingInstructionElement(std::string_view, const std::vector<XMLRawAttribute>&) {}

namespace {

// Byte classes, one bit each, so a scan can stop on any of several bytes with
// one table look-up:
//   kDataStop   '<' '&'               end a run of character data (state 0)
//   kTagStop    ' ' '/' '>' '-'       end a run of tag-name bytes (state 2)
//   kQuote      '"' '\''              open an attribute value (state 6)
//   kHexDigit   '0'-'9' 'a'-'f' 'A'-'F'  digits of a "&#x" reference
enum : unsigned char { kDataStop = 1, kTagStop = 2, kQuote = 4, kHexDigit = 8 };

constexpr std::array<unsigned char, 256> MakeClassTable() {
    std::array<unsigned char, 256> table{};
    table['<'] |= kDataStop;
    table['&'] |= kDataStop;
    table[' '] |= kTagStop;
    table['/'] |= kTagStop;
    table['>'] |= kTagStop;
    table['-'] |= kTagStop;
    table['"'] |= kQuote;
    table['\''] |= kQuote;
    for (int c = '0'; c <= '9'; ++c) table[c] |= kHexDigit;
    for (int c = 'a'; c <= 'f'; ++c) table[c] |= kHexDigit;
    for (int c = 'A'; c <= 'F'; ++c) table[c] |= kHexDigit;
    return table;
}

constexpr std::array<unsigned char, 256> kClass = MakeClassTable();

inline bool Is(char c, unsigned char cls) { return (kClass[static_cast<unsigned char>(c)] & cls) != 0; }

// The first byte of [p, end) in class cls, or end; four bytes per round since
// character data runs are the bulk of every message.
template <unsigned char cls>
const char* ScanUntil(const char* p, const char* end) {
    while (end - p >= 4) {
        if (Is(p[0], cls)) return p;
        if (Is(p[1], cls)) return p + 1;
        if (Is(p[2], cls)) return p + 2;
        if (Is(p[3], cls)) return p + 3;
        p += 4;
    }
    while (p < end && !Is(*p, cls)) ++p;
    return p;
}

const char* Find(const char* p, const char* end, char c) {
    return static_cast<const char*>(std::memchr(p, c, static_cast<std::size_t>(end - p)));
}

unsigned HexValue(char c) {
    if (c <= '9') return static_cast<unsigned>(c - '0');
    if (c <= 'F') return static_cast<unsigned>(c - 'A' + 10);
    return static_cast<unsigned>(c - 'a' + 10);
}

constexpr std::string_view kCDataOpener = "![CDATA[";
constexpr std::string_view kCDataCloser = "]]>";

}  // namespace

void DecodeEscapeString(std::string_view token, std::string& out) {
    if (token == "&lt;") {
        out += '<';
    } else if (token == "&gt;") {
        out += '>';
    } else if (token == "&amp;") {
        out += '&';
    } else if (token == "&quot;") {
        out += '"';
    } else if (token.compare(0, 3, "&#x") == 0) {
        // As many hex digits as follow; none reads as 0. The value is capped
        // at 256 so a long run of digits cannot overflow.
        unsigned value = 0;
        for (std::size_t i = 3; i < token.size() && Is(token[i], kHexDigit) && value < 256; ++i) {
            value = value * 16 + HexValue(token[i]);
        }
        if (value < 256) {
            // One byte, not its UTF-8 form: "&#xE9;" is the lone byte 0xE9.
            // The client escapes only control and markup characters this way.
            out += static_cast<char>(value);
        } else {
            // "&#x100;" and above stay as written, "&" and ";" included.
            out.append(token);
        }
    } else {
        // "&apos;", decimal references and unknown names stay as written.
        out.append(token);
    }
}

void SimpleXMLParserPL::Parse(const std::string& bytes) {
    const char* p = bytes.data();
    std::size_t left = bytes.size();
    while (left > 0) {
        unsigned piece = left > UINT_MAX ? UINT_MAX : static_cast<unsigned>(left);
        Parse(p, piece);
        p += piece;
        left -= piece;
    }
}

void SimpleXMLParserPL::Parse(const char* bytes, unsigned length) {
    if (bytes == nullptr) {
        return;
    }
    const char* p = bytes;
    const char* end = bytes + length;
    while (p < end) {
        switch (state_) {
        case kData: p = Data(p, end); break;
        case kDataEscape: p = DataEscape(p, end); break;
        case kTagName: p = TagName(p, end); break;
        case kEndTagName: p = EndTagName(p, end); break;
        case kBetweenAttributes: p = BetweenAttributes(p, end); break;
        case kAttributeName: p = AttributeName(p, end); break;
        case kBeforeValue: p = BeforeValue(p, end); break;
        case kValue: p = Value(p, end); break;
        case kValueEscape: p = ValueEscape(p, end); break;
        case kComment: p = Comment(p, end); break;
        case kCData: p = CData(p, end); break;
        }
    }
}

void SimpleXMLParserPL::FlushText() {
    if (!text_.empty()) {
        handler_.DoCharacters(text_);
        text_.clear();
    }
}

void SimpleXMLParserPL::BeginTag() {
    name_.clear();
    attributeText_.clear();
    spans_.clear();
    dashes_ = 0;
    state_ = kTagName;
}

void SimpleXMLParserPL::ReportStartTag() {
    reported_.clear();
    std::string_view all(attributeText_);
    for (const AttributeSpan& span : spans_) {
        reported_.push_back({all.substr(span.nameStart, span.nameLength),
                             all.substr(span.valueStart, span.valueLength)});
    }
    // Processing instructions, the XML declaration among them, open no element.
    if (!name_.empty() && name_[0] == '?') {
        handler_.DoProcessingInstructionElement(name_, reported_);
    } else {
        handler_.DoStartElement(name_, reported_);
    }
    state_ = kData;
}

// State 0: runs of data up to "<" or "&". A run that ends in this call with
// nothing pending is reported straight from the input.
const char* SimpleXMLParserPL::Data(const char* p, const char* end) {
    while (p < end) {
        const char* stop = ScanUntil<kDataStop>(p, end);
        if (stop == end) {
            // Data is reported only when the state is left, so keep it.
            text_.append(p, end);
            return end;
        }
        if (*stop == '<') {
            if (text_.empty()) {
                if (stop != p) {
                    handler_.DoCharacters(std::string_view(p, static_cast<std::size_t>(stop - p)));
                }
            } else {
                text_.append(p, stop);
                FlushText();
            }
            BeginTag();
            return stop + 1;
        }
        text_.append(p, stop);
        const char* semicolon = Find(stop, end, ';');
        if (semicolon == nullptr) {
            escape_.assign(stop, end);
            state_ = kDataEscape;
            return end;
        }
        DecodeEscapeString(std::string_view(stop, static_cast<std::size_t>(semicolon + 1 - stop)), text_);
        p = semicolon + 1;
    }
    return p;
}

// State 1: the rest of an escape that began in an earlier call. Only ";"
// ends it, so "<" inside is part of the token.
const char* SimpleXMLParserPL::DataEscape(const char* p, const char* end) {
    const char* semicolon = Find(p, end, ';');
    if (semicolon == nullptr) {
        escape_.append(p, end);
        return end;
    }
    escape_.append(p, semicolon + 1);
    DecodeEscapeString(escape_, text_);
    state_ = kData;
    return semicolon + 1;
}

// State 2: the tag name.
const char* SimpleXMLParserPL::TagName(const char* p, const char* end) {
    while (p < end) {
        const char* stop = ScanUntil<kTagStop>(p, end);
        // The CDATA opener is recognised the moment the name reaches it, so
        // the byte after it already belongs to the section.
        std::size_t size = name_.size();
        if (size < kCDataOpener.size() && size + static_cast<std::size_t>(stop - p) >= kCDataOpener.size()) {
            std::size_t take = kCDataOpener.size() - size;
            name_.append(p, take);
            p += take;
            if (name_ == kCDataOpener) {
                text_.clear();
                state_ = kCData;
                return p;
            }
        }
        name_.append(p, stop);
        if (stop == end) {
            return end;
        }
        switch (*stop) {
        case ' ':
            // Only 0x20 separates: a tab or line break stays in the name.
            state_ = kBetweenAttributes;
            return stop + 1;
        case '/':
            // "</a>" and "<a/>" alike: the end tag's name is all collected
            // around the "/", so "<a/>" closes the innermost open element.
            state_ = kEndTagName;
            return stop + 1;
        case '>':
            ReportStartTag();
            return stop + 1;
        default:
            // "-" is never part of a name; the second one in a tag, adjacent
            // or not ("<a-b-c>"), is taken for the comment opener "<!--".
            if (++dashes_ >= 2) {
                dashes_ = 0;
                state_ = kComment;
                return stop + 1;
            }
            p = stop + 1;
            break;
        }
    }
    return p;
}

// State 3: end tag name; the name is never compared with the start tag's.
const char* SimpleXMLParserPL::EndTagName(const char* p, const char* end) {
    const char* gt = Find(p, end, '>');
    if (gt == nullptr) {
        name_.append(p, end);
        return end;
    }
    name_.append(p, gt);
    handler_.DoEndElement(name_);
    state_ = kData;
    return gt + 1;
}

// State 4: between attributes.
const char* SimpleXMLParserPL::BetweenAttributes(const char* p, const char* end) {
    for (; p < end; ++p) {
        switch (*p) {
        case ' ':
        case '?':  // skipped, so the declaration's closing "?>" ends it like ">"
            break;
        case '>':
            ReportStartTag();
            return p + 1;
        default:
            // Any other byte, "/" included, is the first of an attribute name:
            // "<a x='1'/>" does not end at "/>" but runs on to the next "=".
            spans_.push_back({attributeText_.size(), 0, 0, 0});
            attributeText_ += *p;
            state_ = kAttributeName;
            return p + 1;
        }
    }
    return p;
}

// State 5: attribute name, up to "=" (spaces and ">" included).
const char* SimpleXMLParserPL::AttributeName(const char* p, const char* end) {
    const char* eq = Find(p, end, '=');
    if (eq == nullptr) {
        attributeText_.append(p, end);
        return end;
    }
    attributeText_.append(p, eq);
    AttributeSpan& span = spans_.back();
    span.nameLength = attributeText_.size() - span.nameStart;
    span.valueStart = attributeText_.size();
    state_ = kBeforeValue;
    return eq + 1;
}

// State 6: before the opening quote. Stray bytes here begin the value.
const char* SimpleXMLParserPL::BeforeValue(const char* p, const char* end) {
    const char* quote = p;
    while (quote < end && !Is(*quote, kQuote)) ++quote;
    attributeText_.append(p, quote);
    if (quote == end) {
        return end;
    }
    quote_ = *quote;
    state_ = kValue;
    return quote + 1;
}

// State 7: attribute value, up to the quote that opened it.
const char* SimpleXMLParserPL::Value(const char* p, const char* end) {
    while (p < end) {
        const char* stop = p;
        while (stop < end && *stop != quote_ && *stop != '&') ++stop;
        attributeText_.append(p, stop);
        if (stop == end) {
            return end;
        }
        if (*stop == quote_) {
            AttributeSpan& span = spans_.back();
            span.valueLength = attributeText_.size() - span.valueStart;
            state_ = kBetweenAttributes;
            return stop + 1;
        }
        // An escape; only ";" ends it, even past the closing quote.
        const char* semicolon = Find(stop, end, ';');
        if (semicolon == nullptr) {
            escape_.assign(stop, end);
            state_ = kValueEscape;
            return end;
        }
        DecodeEscapeString(std::string_view(stop, static_cast<std::size_t>(semicolon + 1 - stop)),
                           attributeText_);
        p = semicolon + 1;
    }
    return p;
}

// State 8: the rest of an escape in a value that began in an earlier call.
const char* SimpleXMLParserPL::ValueEscape(const char* p, const char* end) {
    const char* semicolon = Find(p, end, ';');
    if (semicolon == nullptr) {
        escape_.append(p, end);
        return end;
    }
    escape_.append(p, semicolon + 1);
    DecodeEscapeString(escape_, attributeText_);
    state_ = kValue;
    return semicolon + 1;
}

// State 9: comment, dropped. It ends at a ">" right after two or more
// consecutive dashes; the two that opened it do not count.
const char* SimpleXMLParserPL::Comment(const char* p, const char* end) {
    while (true) {
        const char* gt = Find(p, end, '>');
        const char* stop = gt != nullptr ? gt : end;
        const char* run = stop;
        while (run > p && run[-1] == '-') --run;
        dashes_ = run == p ? dashes_ + static_cast<std::size_t>(stop - p) : static_cast<std::size_t>(stop - run);
        if (gt == nullptr) {
            return end;
        }
        if (dashes_ >= 2) {
            dashes_ = 0;
            state_ = kData;
            return gt + 1;
        }
        dashes_ = 0;
        p = gt + 1;
        if (p == end) {
            return end;
        }
    }
}

// State 10: CDATA section up to "]]>", reported as data without decoding.
const char* SimpleXMLParserPL::CData(const char* p, const char* end) {
    while (p < end) {
        const char* gt = Find(p, end, '>');
        if (gt == nullptr) {
            text_.append(p, end);
            return end;
        }
        if (text_.empty() && gt - p >= 2 && gt[-1] == ']' && gt[-2] == ']') {
            // The whole section lies in this call: report it in place.
            if (gt - 2 != p) {
                handler_.DoCharacters(std::string_view(p, static_cast<std::size_t>(gt - 2 - p)));
            }
            state_ = kData;
            return gt + 1;
        }
        text_.append(p, gt + 1);
        p = gt + 1;
        if (text_.size() >= kCDataCloser.size() &&
            text_.compare(text_.size() - kCDataCloser.size(), kCDataCloser.size(), kCDataCloser) == 0) {
            text_.resize(text_.size() - kCDataCloser.size());
            FlushText();
            state_ = kData;
            return p;
        }
    }
    return p;
}
