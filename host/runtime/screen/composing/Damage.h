#pragma once

#include <vector>

#include "backend/Geometry.h"

namespace host {

/// The changed places of the screen: a few rectangles, which may overlap. Ones that are close are taken together, for
/// each costs a call of the window system. A plain value.
class Damage {
public:
    void Add(PixelRect rect);
    void Clear() { rects_.clear(); }
    [[nodiscard]] bool IsEmpty() const { return rects_.empty(); }
    [[nodiscard]] const std::vector<PixelRect>& Rects() const { return rects_; }
    /// The rectangle around all of them.
    [[nodiscard]] PixelRect Bounds() const;

private:
    std::vector<PixelRect> rects_;
};

}  // namespace host
