#pragma once

#include <vector>

#include "backend/Geometry.h"

namespace host {

/// A picture as plain pixels, row by row from the top.
struct Image {
    PixelSize size;
    std::vector<Rgba> pixels;  ///< size.width * size.height of them
};

}  // namespace host
