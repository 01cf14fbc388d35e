#pragma once

namespace Tizen {
namespace Graphics {

/// A place in pixels.
class Point {
public:
    constexpr Point() = default;
    constexpr Point(int px, int py) : x(px), y(py) {}

    friend constexpr bool operator==(const Point&, const Point&) = default;

    int x = 0;
    int y = 0;
};

}  // namespace Graphics
}  // namespace Tizen
