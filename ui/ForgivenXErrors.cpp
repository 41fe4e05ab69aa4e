#include "ui/ForgivenXErrors.h"

#include <climits>

namespace {

struct SerialRange {
    unsigned long first = 1;
    unsigned long last = 0;  // empty until a guard opens it
};

// A few hints are written per dialog shown; their errors, if any, come
// within the next round trip, long before this many more guards have passed.
constexpr unsigned kRanges = 8;
SerialRange ranges[kRanges];
unsigned nextSlot = 0;

}  // namespace

ForgivingXErrors::ForgivingXErrors(Display* display) : display_(display), slot_(nextSlot++ % kRanges) {
    // Open-ended while in scope: a round trip inside it may bring the error.
    ranges[slot_] = {display_ != nullptr ? NextRequest(display_) : 1, display_ != nullptr ? ULONG_MAX : 0};
}

ForgivingXErrors::~ForgivingXErrors() {
    if (display_ != nullptr) ranges[slot_].last = NextRequest(display_) - 1;
}

bool IsForgivenXError(const XErrorEvent& event) {
    for (const SerialRange& range : ranges) {
        if (range.first <= event.serial && event.serial <= range.last) return true;
    }
    return false;
}
