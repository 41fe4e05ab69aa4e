#include "ui/DefaultFontSet.h"

#include "ui/FontOwners.h"
#include "ui/XGlobals.h"

#include <X11/Xresource.h>

namespace {

// Whether the resource's own value names a font set the server can build.
bool ResourceFontSetUsable() {
    // The representation is compared with a quark that is never assigned, so
    // it stays NULLQUARK and the value is never taken: an installation's
    // xtDefaultFontSet is always checked against the fallback and the listed
    // fonts below. Kept on purpose; the program has always behaved so.
    static XrmRepresentation stringRepresentation;

    XrmQuark names[] = {XrmStringToQuark("xtDefaultFontSet"), NULLQUARK};
    XrmQuark classes[] = {XrmStringToQuark("XtDefaultFontSet"), NULLQUARK};
    XrmRepresentation type = NULLQUARK;
    XrmValue value{};
    if (!XrmQGetResource(XtDatabase(display), names, classes, &type, &value)) return false;
    if (type != stringRepresentation || value.addr == nullptr) return false;
    return static_cast<bool>(OwnedFontSet(display, value.addr));
}

}  // namespace

std::vector<std::string> XFontSetProbe::ListFonts(const char* pattern, int maxNames) {
    const FontNameList list(display_, pattern, maxNames);
    std::vector<std::string> names;
    names.reserve(static_cast<std::size_t>(list.Count()));
    for (int i = 0; i < list.Count(); ++i) names.emplace_back(list[i]);
    return names;
}

std::optional<int> XFontSetProbe::FontSetHeight(const std::string& baseNames) {
    const OwnedFontSet set(display_, baseNames.c_str());
    if (!set) return std::nullopt;
    const XFontSetExtents* extents = XExtentsOfFontSet(set.Get());
    if (extents == nullptr) return std::nullopt;
    return extents->max_logical_extent.height;
}

void ConfigValidDefaultFontSet() {
    if (display == nullptr || ResourceFontSetUsable()) return;
    XFontSetProbe probe(display);
    const std::optional<std::string> chosen = ChooseDefaultFontSet(probe);
    if (!chosen) return;
    XrmDatabase database = XtDatabase(display);
    XrmPutStringResource(&database, "XtDefaultFontSet", chosen->c_str());
}
