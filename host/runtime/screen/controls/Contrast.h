#pragma once

#include "backend/Geometry.h"

namespace host {

/// How well one colour stands out from another, 1 (not at all) to 21, by the W3C's "Web Content Accessibility
/// Guidelines 2.1", definitions of "contrast ratio" and "relative luminance". Alpha is not looked at.
[[nodiscard]] double ContrastRatio(Rgba left, Rgba right);
/// Black or white, whichever stands out better from the colour.
[[nodiscard]] Rgba BlackOrWhiteAgainst(Rgba color);

}  // namespace host
