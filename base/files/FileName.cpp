#include "base/files/FileName.h"

FileName::FileName(std::string_view text) {
    if (text.empty()) return;
    if (text.size() > kMaxLength) throw IllegalFileNameLength();
    if (text == "." || text == "..") throw IllegalFileName();
    if (text.find_first_of(std::string_view("/\0", 2)) != std::string_view::npos) throw IllegalFileName();
    text_ = std::string(text);
}
