#pragma once

#include "Drawing.h"

namespace pictures {

/// How much of the instrument is drawn: below 40 pixels light and shade only make it muddy.
enum class Detail { kFull, kSmall };

/// Draws the ocarina seen from above, mouthpiece downwards, with gradients only, so that an SVG can hold it: its body
/// is a circle of radius 1 around 0,0 and its mouthpiece ends at y = 1.50.
void DrawEmblem(cairo_t* pen, Detail detail);
/// The emblem's outline as a path.
void EmblemPath(cairo_t* pen);

/// Writes the application icon: brevant.svg and the usual sizes as brevant-N.png.
void DrawApplicationIcon(const std::string& folder);
/// Writes the icon that the program gives its window, app_icon.png.
void DrawWindowIcon(const std::string& folder);
/// Writes the icons of the installed page: icon-N.png, and icon-maskable-512.png that a phone cuts to its own shape.
void DrawPageIcons(const std::string& folder);

}  // namespace pictures
