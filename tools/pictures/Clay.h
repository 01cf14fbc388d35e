#pragma once

#include "Vector3.h"

namespace pictures {

/// The ocarina as a solid: a flattened pebble with a mouthpiece, four glazed finger wells and their holes, given by its
/// distance function, so that a picture of any size can be taken of it. Lies at 0,0,0 with its mouthpiece towards -y
/// and its face towards +z; about 2 wide. Immutable and free of state: any thread may ask.
namespace clay {

/// What a point of the surface is made of, as shares that add up to at most 1; the rest is bare clay.
struct Material {
    double glaze = 0;
    double bore = 0;
    /// How far down the bore, 0 at its rim .. 1 where no light reaches.
    double darkness = 0;
};

/// No point of the instrument is farther from its middle than this.
inline constexpr double kReach = 1.8;
/// How far the lowest point of the instrument lies below its middle.
inline constexpr double kDepth = 0.50;

/// The distance to the surface, negative inside; never more than the true distance by more than a third.
double Distance(const Vector3& point);
Vector3 Normal(const Vector3& point);
Material MaterialAt(const Vector3& point);
/// The fine grain of fired clay, about -1..1.
double Grain(const Vector3& point);

}  // namespace clay

}  // namespace pictures
