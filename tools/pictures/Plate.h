#pragma once

#include "Drawing.h"

namespace pictures {

// The round buttons of the top strip, in design units.
inline constexpr double kButton = 96;
inline constexpr double kCentre = kButton / 2;
inline constexpr double kPlateRadius = 45;
inline constexpr double kRingWidth = 2.5;
inline constexpr double kSignWidth = 6.5;

enum class Look { kNormal, kPressed };

/// The round plate of a button; returns the colour in which its sign is to be drawn.
Colour DrawRoundPlate(cairo_t* pen, Look look);
/// The same plate, drawn out to a pill that fills the picture.
void DrawLongPlate(cairo_t* pen, double width, double height);

}  // namespace pictures
