#pragma once

#include <cstdint>

namespace host {

// Plain values that cross the seam between the runtime and a back end.

/// A size in device pixels, or in the phone's own pixels where a name says so.
struct PixelSize {
    int width = 0;
    int height = 0;

    friend bool operator==(const PixelSize&, const PixelSize&) = default;
};

/// A point in a surface's own units (control units, before its scale).
struct PointF {
    double x = 0;
    double y = 0;

    friend bool operator==(const PointF&, const PointF&) = default;
};

/// A rectangle in device pixels; empty when a side is not positive.
struct PixelRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    [[nodiscard]] bool IsEmpty() const noexcept { return width <= 0 || height <= 0; }
    [[nodiscard]] PixelRect Intersection(const PixelRect& other) const noexcept;
    /// The smallest rectangle that holds both; an empty one adds nothing.
    [[nodiscard]] PixelRect Union(const PixelRect& other) const noexcept;
    [[nodiscard]] bool Contains(const PixelRect& other) const noexcept;
    /// The far edges belong to the neighbours.
    [[nodiscard]] bool Contains(const PointF& point) const noexcept {
        return point.x >= x && point.y >= y && point.x < x + width && point.y < y + height;
    }
    /// Its pixels; 0 for an empty one.
    [[nodiscard]] std::int64_t Area() const noexcept { return IsEmpty() ? 0 : std::int64_t{width} * height; }

    friend bool operator==(const PixelRect&, const PixelRect&) = default;
};

struct SizeF {
    double width = 0;
    double height = 0;

    friend bool operator==(const SizeF&, const SizeF&) = default;
};

/// A rectangle in a surface's own units.
struct RectF {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    /// The far edges belong to the neighbours.
    [[nodiscard]] bool Contains(const PointF& point) const noexcept {
        return point.x >= x && point.y >= y && point.x < x + width && point.y < y + height;
    }
    /// The rectangle whose every edge lies further out by `distance`; further in when that is negative.
    [[nodiscard]] RectF Grown(double distance) const noexcept {
        return {x - distance, y - distance, width + 2 * distance, height + 2 * distance};
    }

    friend bool operator==(const RectF&, const RectF&) = default;
};

/// A colour with straight (not premultiplied) alpha.
struct Rgba {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    std::uint8_t alpha = 0;

    friend bool operator==(const Rgba&, const Rgba&) = default;
};

inline PixelRect PixelRect::Intersection(const PixelRect& other) const noexcept {
    const int left = x > other.x ? x : other.x;
    const int top = y > other.y ? y : other.y;
    const int right = x + width < other.x + other.width ? x + width : other.x + other.width;
    const int bottom = y + height < other.y + other.height ? y + height : other.y + other.height;
    if (right <= left || bottom <= top) return {};
    return {left, top, right - left, bottom - top};
}

inline PixelRect PixelRect::Union(const PixelRect& other) const noexcept {
    if (IsEmpty()) return other;
    if (other.IsEmpty()) return *this;
    const int left = x < other.x ? x : other.x;
    const int top = y < other.y ? y : other.y;
    const int right = x + width > other.x + other.width ? x + width : other.x + other.width;
    const int bottom = y + height > other.y + other.height ? y + height : other.y + other.height;
    return {left, top, right - left, bottom - top};
}

inline bool PixelRect::Contains(const PixelRect& other) const noexcept {
    return other.x >= x && other.y >= y && other.x + other.width <= x + width && other.y + other.height <= y + height;
}

}  // namespace host
