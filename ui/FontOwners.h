#pragma once

// Owners for the font objects Xlib hands out, each freed with its own call.

#include <X11/Xlib.h>

// A font set with the list of charsets it lacks; both are freed together.
class OwnedFontSet {
public:
    OwnedFontSet(Display* display, const char* baseNames) : display_(display) {
        char* defaultText = nullptr;
        set_ = XCreateFontSet(display, baseNames, &missing_, &missingCount_, &defaultText);
    }
    ~OwnedFontSet() {
        if (missing_ != nullptr) XFreeStringList(missing_);
        if (set_ != nullptr) XFreeFontSet(display_, set_);
    }
    OwnedFontSet(const OwnedFontSet&) = delete;
    OwnedFontSet& operator=(const OwnedFontSet&) = delete;

    XFontSet Get() const noexcept { return set_; }
    explicit operator bool() const noexcept { return set_ != nullptr; }

private:
    Display* display_;
    XFontSet set_ = nullptr;
    char** missing_ = nullptr;
    int missingCount_ = 0;
};

// The names XListFonts returned.
class FontNameList {
public:
    FontNameList(Display* display, const char* pattern, int maxNames)
        : names_(XListFonts(display, pattern, maxNames, &count_)) {
        if (names_ == nullptr) count_ = 0;
    }
    ~FontNameList() {
        if (names_ != nullptr) XFreeFontNames(names_);
    }
    FontNameList(const FontNameList&) = delete;
    FontNameList& operator=(const FontNameList&) = delete;

    int Count() const noexcept { return count_; }
    const char* operator[](int i) const noexcept { return names_[i]; }

private:
    int count_ = 0;
    char** names_ = nullptr;
};
