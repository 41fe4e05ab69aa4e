#include "ui/FocusSteps.h"

#include <algorithm>

int NextSensitive(const std::vector<bool>& sensitive, int from, int step) {
    const int count = static_cast<int>(sensitive.size());
    if (count == 0) return -1;
    // An index out of range (no focus yet) counts as the place before the first.
    if (from < 0 || from >= count) from = step > 0 ? count - 1 : 0;
    for (int moved = 1; moved <= count; ++moved) {
        const int candidate = ((from + moved * step) % count + count) % count;
        if (sensitive[static_cast<std::size_t>(candidate)]) return candidate;
    }
    return -1;
}

int SettledFocus(const std::vector<bool>& sensitive, int focused) {
    if (focused >= 0 && focused < static_cast<int>(sensitive.size()) && sensitive[static_cast<std::size_t>(focused)]) {
        return focused;
    }
    return NextSensitive(sensitive, focused, 1);
}

std::optional<ListStep> ListStepNamed(std::string_view name) {
    constexpr struct {
        std::string_view name;
        ListStep step;
    } kNames[] = {{"up", ListStep::Up},     {"down", ListStep::Down},     {"home", ListStep::Home},
                  {"end", ListStep::End},   {"pageUp", ListStep::PageUp}, {"pageDown", ListStep::PageDown}};
    for (const auto& entry : kNames) {
        if (entry.name == name) return entry.step;
    }
    return std::nullopt;
}

int SteppedRow(int current, int count, ListStep step, int pageRows) {
    if (count <= 0) return -1;
    if (current < 0 || current >= count) return step == ListStep::End ? count - 1 : 0;
    const int page = std::max(pageRows, 1);
    int row = current;
    switch (step) {
        case ListStep::Up: row = current - 1; break;
        case ListStep::Down: row = current + 1; break;
        case ListStep::Home: row = 0; break;
        case ListStep::End: row = count - 1; break;
        case ListStep::PageUp: row = current - page; break;
        case ListStep::PageDown: row = current + page; break;
    }
    return std::clamp(row, 0, count - 1);
}
