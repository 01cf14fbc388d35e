#pragma once

#include "Drawing.h"

namespace pictures {

/// Writes the name Brevant in its own letters: one round stroke of even width, made of lines and arcs only.
/// @param centre,baseline in the pen's units; @param xHeight the height of a small letter, from the middle of its
/// stroke.
void DrawWordmark(cairo_t* pen, double centre, double baseline, double xHeight, const Colour& colour,
                  const Colour& accent);

}  // namespace pictures
