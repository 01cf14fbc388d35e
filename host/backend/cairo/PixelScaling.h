#pragma once

#include "backend/cairo/CairoPixel.h"

namespace host {

/// Fills `to` with a scaled copy of `from`; neither may be empty. A pixel that is shrunk weighs all of the area that it
/// covers, so that thin lines fade and do not break; an enlarged one is interpolated linearly. Five times as fast as
/// Cairo's own good filter, which counts when a splash screen is fitted to a window.
void ScalePixels(const PixelRows& from, const PixelRows& to);

}  // namespace host
