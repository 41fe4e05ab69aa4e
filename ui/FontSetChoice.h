#pragma once

// Choosing a default font set that the server can build, apart from the X
// calls (a FontSetProbe makes them), so the choice can be checked without a
// server.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// What the toolkit itself falls back to when a font set cannot be made.
constexpr char kToolkitFallbackFontSet[] = "-*-*-*-R-*-*-*-120-*-*-*-*,*";
// The fonts listed when even that fails, and how many of them at most.
constexpr char kCandidateFontPattern[] = "-*-*-*-r-*-*-*-120-*-*-*-*";
constexpr int kMaxCandidateFonts = 1000;

class FontSetProbe {
public:
    virtual ~FontSetProbe() = default;
    // The names of at most `maxNames` fonts matching `pattern`, in the
    // server's order.
    virtual std::vector<std::string> ListFonts(const char* pattern, int maxNames) = 0;
    // Builds (and frees again) a font set from the comma-separated base
    // names; its largest logical extent height if it could be built.
    virtual std::optional<int> FontSetHeight(const std::string& baseNames) = 0;
};

// The font set pattern that stands for one listed font: the name up to and
// including its 13th "-", then "*,*", so that it keeps the font's fields and
// takes any charset for the rest. Empty when the name has fewer than 13 "-".
std::string FontSetPatternFromFontName(std::string_view name);

// What to store as the default font set once the resource's own value has
// failed: nothing when the toolkit's fallback can be built (it will use it);
// else, of the patterns made from the listed fonts that can be built, the one
// with the smallest height (the earlier one on equal heights); nothing when
// none can.
std::optional<std::string> ChooseDefaultFontSet(FontSetProbe& probe);
