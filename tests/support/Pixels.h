#pragma once

#include "backend/Painter.h"

/// The pixel there as straight RGBA; transparent outside.
inline host::Rgba PixelAt(const host::Surface& surface, int x, int y) {
    return surface.Read({x, y, 1, 1}).pixels.front();
}
