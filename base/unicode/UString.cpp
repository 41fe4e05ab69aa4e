#include "base/unicode/UString.h"

#include <cstring>
#include <new>

namespace unicode_detail {

SharedText* SharedText::Make(std::string_view text) {
    void* memory = ::operator new(sizeof(SharedText) + text.size() + 1);
    auto* shared = new (memory) SharedText(text.size());
    char* chars = reinterpret_cast<char*>(shared + 1);
    std::memcpy(chars, text.data(), text.size());
    chars[text.size()] = '\0';
    return shared;
}

void SharedText::Release() noexcept {
    // The last owner must see every write the others made before letting go.
    if (owners_.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
    this->~SharedText();
    ::operator delete(this);
}

}  // namespace unicode_detail
