#pragma once

#include <vector>

#include "backend/Geometry.h"

namespace host {

/// A set of pixels as rectangles that do not overlap. A plain value.
class Region {
public:
    Region() = default;
    explicit Region(const PixelRect& rect);

    void Subtract(const PixelRect& rect);
    [[nodiscard]] bool IsEmpty() const { return rects_.empty(); }
    [[nodiscard]] const std::vector<PixelRect>& Rects() const { return rects_; }

private:
    std::vector<PixelRect> rects_;
};

}  // namespace host
