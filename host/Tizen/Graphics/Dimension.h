#pragma once

namespace Tizen {
namespace Graphics {

/// A size in pixels.
class Dimension {
public:
    constexpr Dimension() = default;
    constexpr Dimension(int w, int h) : width(w), height(h) {}

    friend constexpr bool operator==(const Dimension&, const Dimension&) = default;

    int width = 0;
    int height = 0;
};

}  // namespace Graphics
}  // namespace Tizen
