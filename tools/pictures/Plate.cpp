#include "Plate.h"

namespace pictures {

Colour DrawRoundPlate(cairo_t* pen, Look look) {
    const bool isPressed = look == Look::kPressed;
    Circle(pen, kCentre, kCentre, kPlateRadius);
    FillWith(pen, isPressed ? kHoney : kPlate);
    // A dark and a light line side by side, so that the edge shows on every colour.
    Circle(pen, kCentre, kCentre, kPlateRadius + kRingWidth / 2);
    StrokeRound(pen, kRingWidth / 2, kPlateEdge);
    Circle(pen, kCentre, kCentre, kPlateRadius - kRingWidth / 2);
    StrokeRound(pen, kRingWidth, isPressed ? WithAlpha(kInk, 0.55) : kPlateRing);
    return isPressed ? kInk : kWhite;
}

void DrawLongPlate(cairo_t* pen, double width, double height) {
    const auto outline = [&](double inset) {
        RoundedRectangle(pen, inset, inset, width - 2 * inset, height - 2 * inset, height);
    };
    outline(2);
    FillWith(pen, kPlate);
    outline(1);
    StrokeRound(pen, kRingWidth / 2, kPlateEdge);
    outline(1 + kRingWidth);
    StrokeRound(pen, kRingWidth, kPlateRing);
}

}  // namespace pictures
