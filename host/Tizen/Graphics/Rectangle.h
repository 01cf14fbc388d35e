#pragma once

#include "Tizen/Graphics/Dimension.h"
#include "Tizen/Graphics/Point.h"

namespace Tizen {
namespace Graphics {

/// A rectangle in pixels: its top left and its size.
class Rectangle {
public:
    constexpr Rectangle() = default;
    constexpr Rectangle(int px, int py, int w, int h) : x(px), y(py), width(w), height(h) {}
    constexpr Rectangle(const Point& topLeft, const Dimension& size)
        : x(topLeft.x), y(topLeft.y), width(size.width), height(size.height) {}

    constexpr bool IsEmpty() const { return width <= 0 || height <= 0; }

    friend constexpr bool operator==(const Rectangle&, const Rectangle&) = default;

    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

}  // namespace Graphics
}  // namespace Tizen
