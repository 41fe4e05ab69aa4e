#include "text/UFormatIterator.h"

#include <cstring>

namespace {

// memchr over [from, to), null when absent; tolerates an empty range.
const char* Find(const char* from, const char* to, char c) {
    if (from == to) {
        return nullptr;
    }
    return static_cast<const char*>(std::memchr(from, c, static_cast<std::size_t>(to - from)));
}

}  // namespace

UFormatIterator::UFormatIterator(UStringRef<UTF8> text)
    : begin_(text.Data()),
      end_(text.Data() + text.Size()),
      current_(begin_),
      after_(begin_) {
    GetNextSegment();
}

UFormatIterator UFormatIterator::End(UStringRef<UTF8> text) {
    UFormatIterator end;
    end.begin_ = text.Data();
    end.end_ = text.Data() + text.Size();
    end.current_ = end.end_;
    end.after_ = end.end_;
    return end;
}

void UFormatIterator::GetNextSegment() {
    current_ = after_;
    if (current_ == end_) {
        segment_ = UFormatSegment();
        return;
    }
    const char* open = Find(current_, end_, '{');
    if (open == current_) {
        // The name runs to the first "}", so a "{" inside it is part of the name.
        const char* close = Find(open + 1, end_, '}');
        if (close == nullptr) {
            throw BadFormatStringError();
        }
        segment_.isVariable = true;
        segment_.text = UStringRef<UTF8>(open + 1, static_cast<std::size_t>(close - open - 1));
        after_ = close + 1;
        return;
    }
    // A "}" in literal text is an ordinary character: no doubling, no escapes.
    const char* stop = open ? open : end_;
    segment_.isVariable = false;
    segment_.text = UStringRef<UTF8>(current_, static_cast<std::size_t>(stop - current_));
    after_ = stop;
}
