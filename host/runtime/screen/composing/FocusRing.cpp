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
    const RectF ring{place.x - distance, place.y - distance, place.width + 2 * distance, place.height + 2 * distance};
    const double arc = 2 * (node.Corner() * scale + distance);
    pixels.StrokeRoundRectangle(ring, arc, arc, kDarkWidth * scale, kDark);
    pixels.StrokeRoundRectangle(ring, arc, arc, kLightWidth * scale, kLight);
}

}  // namespace host
