#include "ui/FontSetChoice.h"

#include <cstddef>
#include <set>

namespace {

// An XLFD has 14 "-"; the 13th is the one before the charset registry.
constexpr int kFieldDashes = 13;

}  // namespace

std::string FontSetPatternFromFontName(std::string_view name) {
    int dashes = 0;
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (name[i] == '-' && ++dashes == kFieldDashes) {
            std::string pattern(name.substr(0, i + 1));
            pattern += "*,*";
            return pattern;
        }
    }
    return std::string();
}

std::optional<std::string> ChooseDefaultFontSet(FontSetProbe& probe) {
    if (probe.FontSetHeight(kToolkitFallbackFontSet)) return std::nullopt;

    std::vector<std::string> names = probe.ListFonts(kCandidateFontPattern, kMaxCandidateFonts);
    // A probe that returns more than it was asked for is still held to the limit.
    if (names.size() > static_cast<std::size_t>(kMaxCandidateFonts)) names.resize(kMaxCandidateFonts);

    std::set<std::string> tried;
    std::optional<std::string> best;
    int bestHeight = 0;
    for (const std::string& name : names) {
        std::string pattern = FontSetPatternFromFontName(name);
        if (pattern.empty() || !tried.insert(pattern).second) continue;
        const std::optional<int> height = probe.FontSetHeight(pattern);
        if (!height) continue;
        if (!best || *height < bestHeight) {
            best = std::move(pattern);
            bestHeight = *height;
        }
    }
    return best;
}
