#include "base/xml/XMLWriter.h"

#include <algorithm>
#include <utility>

#include "base/xml/XMLElement.h"

namespace {

// A line feed and enough tabs for any ordinary depth, handed out in one piece.
constexpr char kLineBreak[] = "\n\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t";
constexpr std::size_t kMaxTabsPerPiece = sizeof kLineBreak - 2;

}  // namespace

XMLWriter::XMLWriter(UTextReceiver<UTF8>& receiver, const XMLFormatStyle& style)
    : receiver_(receiver), mode_(style.mode) {}

void XMLWriter::BeginDocument(EncodingDeclaration declaration) {
    openElements_.clear();
    state_ = State::ContentBegun;
    receiver_.StartText();
    Put(declaration == WithEncoding ? "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
                                    : "<?xml version=\"1.0\"?>");
}

void XMLWriter::EndDocument() {
    while (!openElements_.empty()) {
        EndElement();
    }
    receiver_.EndText();
}

void XMLWriter::BeginElement(UStringRef<UTF8> name) {
    OpenElement(SharedUString<UTF8>(name));
}

void XMLWriter::BeginElement(const char* name) {
    OpenElement(SharedUString<UTF8>(name != nullptr ? name : ""));
}

void XMLWriter::OpenElement(SharedUString<UTF8> name) {
    if (state_ == State::StartTagOpen) {
        Put(">");
    }
    BreakLine(openElements_.size());
    Put("<");
    Put(name.Ref());
    openElements_.push_back(std::move(name));
    state_ = State::StartTagOpen;
}

void XMLWriter::AddAttribute(UStringRef<UTF8> name, UStringRef<UTF8> value) {
    Put(" ");
    Put(name);
    Put("=\"");
    PutEscaped(value, true, true, true);
    Put("\"");
}

void XMLWriter::AddAttribute(const char* name, UStringRef<UTF8> value) {
    AddAttribute(UStringRef<UTF8>(name != nullptr ? name : ""), value);
}

void XMLWriter::WriteString(UStringRef<UTF8> text) {
    BeginWritingTagContent();
    PutEscaped(text, escapeText_, false, escapeLineBreaks_);
    AfterWritingTagContent();
}

void XMLWriter::WriteCData(UStringRef<UTF8> text) {
    BeginWritingTagContent();
    Put("<![CDATA[");
    Put(text);
    Put("]]>");
    AfterWritingTagContent();
}

void XMLWriter::EndElement() {
    if (openElements_.empty()) {
        return;
    }
    if (state_ == State::StartTagOpen) {
        CloseStartTag();
    }
    if (state_ == State::EndTagWritten) {
        // The last child was an element: the end tag lines up with its start tag.
        BreakLine(openElements_.size() - 1);
    }
    Put("</");
    Put(openElements_.back().Ref());
    Put(">");
    openElements_.pop_back();
    state_ = State::EndTagWritten;
}

void XMLWriter::WriteXMLElement(const XMLElement& element) {
    // An explicit stack rather than recursion: a tree read from a client
    // document may be nested far deeper than the call stack allows.
    struct Frame {
        const XMLElement* element;
        std::size_t nextChild;
    };
    std::vector<Frame> pending;
    auto open = [&](const XMLElement& e) {
        OpenElement(e.Name());
        for (const auto& [name, value] : e.Attributes()) {
            AddAttribute(name.Ref(), value.Ref());
        }
        if (!e.GetValue().Empty()) {
            WriteString(e.GetValue());
        }
        pending.push_back({&e, 0});
    };
    open(element);
    while (!pending.empty()) {
        const std::pmr::vector<XMLElement>& children = pending.back().element->Children();
        std::size_t& next = pending.back().nextChild;
        if (next < children.size()) {
            open(children[next++]);
        } else {
            EndElement();
            pending.pop_back();
        }
    }
}

void XMLWriter::BeginWritingTagContent() {
    if (state_ == State::StartTagOpen) {
        CloseStartTag();
    }
    if (state_ == State::EndTagWritten) {
        BreakLine(0);
    }
}

void XMLWriter::AfterWritingTagContent() {
    state_ = State::TextWritten;
}

void XMLWriter::CloseStartTag() {
    Put(">");
    state_ = State::ContentBegun;
}

void XMLWriter::BreakLine(std::size_t tabs) {
    if (mode_ == XMLFormatStyle::LineFeeds) {
        Put("\n");
    } else if (mode_ == XMLFormatStyle::Indented) {
        std::size_t now = std::min(tabs, kMaxTabsPerPiece);
        Put(UStringRef<UTF8>(kLineBreak, 1 + now));
        for (tabs -= now; tabs > 0; tabs -= now) {
            now = std::min(tabs, kMaxTabsPerPiece);
            Put(UStringRef<UTF8>(kLineBreak + 1, now));
        }
    }
}

void XMLWriter::PutEscaped(UStringRef<UTF8> text, bool markup, bool quote, bool lineBreaks) {
    const char* data = text.Data();
    const std::size_t size = text.Size();
    std::size_t runStart = 0;
    for (std::size_t i = 0; i < size; ++i) {
        const char* reference = nullptr;
        switch (data[i]) {
        case '<': reference = markup ? "&lt;" : nullptr; break;
        case '&': reference = markup ? "&amp;" : nullptr; break;
        case '>': reference = markup ? "&gt;" : nullptr; break;
        case '"': reference = quote ? "&quot;" : nullptr; break;
        case '\r': reference = lineBreaks ? "&#xd;" : nullptr; break;
        case '\n': reference = lineBreaks ? "&#xa;" : nullptr; break;
        default: break;
        }
        if (reference == nullptr) {
            continue;
        }
        if (i > runStart) {
            Put(UStringRef<UTF8>(data + runStart, i - runStart));
        }
        Put(reference);
        runStart = i + 1;
    }
    if (size > runStart) {
        Put(UStringRef<UTF8>(data + runStart, size - runStart));
    }
}
