#include "ui/MonitorPlacement.h"

#include <algorithm>

namespace {

// The start of a span of `length` that lies on [start, start + room) as far
// as it can, its start on it whatever its length.
int KeptWithin(int start, int room, int at, int length) {
    return std::max(std::min(at, start + room - length), start);
}

}  // namespace

bool Head::Holds(ScreenPoint point) const {
    return point.x >= x && point.x - x < width && point.y >= y && point.y - y < height;
}

bool operator==(const Head& a, const Head& b) {
    return a.x == b.x && a.y == b.y && a.width == b.width && a.height == b.height;
}

bool operator!=(const Head& a, const Head& b) {
    return !(a == b);
}

std::vector<Head> HeadsOrScreen(std::vector<Head> reported, const Head& screen) {
    if (reported.empty()) reported.push_back(screen);
    return reported;
}

Head HeadUnderPointer(const std::vector<Head>& heads, std::optional<ScreenPoint> pointer) {
    if (pointer) {
        for (const Head& head : heads) {
            if (head.Holds(*pointer)) return head;
        }
    }
    return heads.front();
}

ScreenPoint KeptOn(const Head& head, ScreenPoint origin, DialogSize size) {
    return {KeptWithin(head.x, head.width, origin.x, size.width),
            KeptWithin(head.y, head.height, origin.y, size.height)};
}

ScreenPoint CentredOn(const Head& head, DialogSize size) {
    return KeptOn(head, {head.x + (head.width - size.width) / 2, head.y + (head.height - size.height) / 2}, size);
}

ScreenPoint CascadedFrom(ScreenPoint last, const Head& head, DialogSize size) {
    ScreenPoint next{last.x + kCascadeStep, last.y + kCascadeStep};
    if (next.x + size.width > head.x + head.width) next.x = head.x;
    if (next.y + size.height > head.y + head.height) next.y = head.y;
    return KeptOn(head, next, size);
}
