#include "runtime/screen/composing/Damage.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace host {

namespace {

constexpr std::size_t kMostDamageRects = 8;

// Pixels that a rectangle around both presents beyond what the two cover by themselves.
std::int64_t Waste(const PixelRect& left, const PixelRect& right) {
    return left.Union(right).Area() - left.Area() - right.Area() + left.Intersection(right).Area();
}

}  // namespace

void Damage::Add(PixelRect rect) {
    if (rect.IsEmpty()) return;
    // A quarter more pixels is the price that one rectangle less is worth.
    constexpr std::int64_t kWorthPerWaste = 4;
    for (std::size_t i = 0; i < rects_.size();) {
        if (Waste(rects_[i], rect) * kWorthPerWaste > rects_[i].Area() + rect.Area()) {
            ++i;
            continue;
        }
        // The union may have come close to one that was passed, so the search begins anew.
        rect = rect.Union(rects_[i]);
        rects_.erase(rects_.begin() + static_cast<std::ptrdiff_t>(i));
        i = 0;
    }
    rects_.push_back(rect);
    if (rects_.size() <= kMostDamageRects) return;
    const auto cheapest = std::min_element(
        rects_.begin(), rects_.end() - 1,
        [&rect](const auto& left, const auto& right) { return Waste(left, rect) < Waste(right, rect); });
    const PixelRect merged = cheapest->Union(rect);
    rects_.pop_back();
    rects_.erase(cheapest);
    Add(merged);
}

PixelRect Damage::Bounds() const {
    PixelRect bounds;
    for (const PixelRect& rect : rects_) bounds = bounds.Union(rect);
    return bounds;
}

}  // namespace host
