#include "runtime/screen/composing/FocusRing.h"

namespace host {

namespace {

// In the phone's pixels.
constexpr double kDistance = 3;
constexpr double kDarkWidth = 7;
constexpr double kLightWidth = 3;
constexpr int kReach = 8;  ///< how far it extends beyond the node, with its antialiased edge
constexpr Rgba kDark{24, 24, 24, 255};
constexpr Rgba kLight{255, 255, 255, 255};

}  // namespace

PixelRect FocusRingPlace(const Node& node) {
    if (!node.IsVisibleInTree()) return {};
    const PixelRect place = node.ScreenBounds();
    return {place.x - kReach, place.y - kReach, place.width + 2 * kReach, place.height + 2 * kReach};
}

void PaintFocusRing(const Node& node, const PixelRect& place, double scale, Surface& pixels) {
    const double distance = kDistance * scale;
    const Node::Outline outline = node.GetOutline();
    const RectF edge{place.x + outline.rect.x * scale, place.y + outline.rect.y * scale, outline.rect.width * scale,
                     outline.rect.height * scale};
    const RectF ring = edge.Grown(distance);
    const double arc = 2 * (outline.corner * scale + distance);
    pixels.StrokeRoundRectangle(ring, arc, arc, kDarkWidth * scale, kDark);
    pixels.StrokeRoundRectangle(ring, arc, arc, kLightWidth * scale, kLight);
}

}  // namespace host
