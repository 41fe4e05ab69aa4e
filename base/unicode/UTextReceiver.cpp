#include "base/unicode/UTextReceiver.h"

#include <utility>

UStringBuilder::UStringBuilder(std::size_t initialCapacity) {
    text_.reserve(initialCapacity);
}

void UStringBuilder::StartText() {
    text_.clear();
}

void UStringBuilder::AddText(UStringRef<UTF8> piece) {
    text_.append(piece.View());
}

void UStringBuilder::EndText() {}

std::string UStringBuilder::TakeText() {
    std::string taken = std::move(text_);
    text_.clear();
    return taken;
}
