#include "base/files/FileLocation.h"

#include "base/files/FileErrors.h"

FileLocation MakeFileLocation(std::string_view text) {
    if (text.empty()) return FileLocation();
    if (text.front() != '/' || text.find('\0') != std::string_view::npos) throw IllegalFileLocation();
    std::string path;
    path.reserve(text.size());
    for (char c : text) {
        if (c == '/' && !path.empty() && path.back() == '/') continue;
        path += c;
    }
    if (path.size() > 1 && path.back() == '/') path.pop_back();
    return FileLocation(std::move(path));
}

FileLocation FileLocation::Child(const FileName& name) const {
    if (!HasPath()) throw NoFileLocationError();
    if (name.Empty()) throw IllegalFileName();
    std::string path = path_;
    if (path.back() != '/') path += '/';  // only the root ends in "/"
    path += name.Text();
    return FileLocation(std::move(path));
}
