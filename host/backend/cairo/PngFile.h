#pragma once

#include <cairo.h>

#include <string>

namespace host {

/// Writes an image surface as a PNG file, without alpha where the surface has none; false when that failed. libpng at
/// its fast setting takes a fifth of the time of Cairo's own writer, which looks for the smallest file.
[[nodiscard]] bool WritePngFile(cairo_surface_t* image, const std::string& path);

}  // namespace host
