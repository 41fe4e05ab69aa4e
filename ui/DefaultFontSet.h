#pragma once

// A default font set that the server can build, so that the text widgets
// never fail on their first label.

#include <optional>
#include <string>
#include <vector>

#include "ui/FontSetChoice.h"

#include <X11/Xlib.h>

// Makes sure the resource "XtDefaultFontSet" of the display's database names
// a font set that can be created: the resource's own value is never taken
// (see the .cpp), then the toolkit's fallback pattern, then the listed font
// whose font set is smallest, which is stored in the database. Leaves the
// resource alone when nothing can be built. After the display has opened.
void ConfigValidDefaultFontSet();

// The probe over a real server.
class XFontSetProbe : public FontSetProbe {
public:
    explicit XFontSetProbe(Display* display) : display_(display) {}
    std::vector<std::string> ListFonts(const char* pattern, int maxNames) override;
    std::optional<int> FontSetHeight(const std::string& baseNames) override;

private:
    Display* display_;
};
