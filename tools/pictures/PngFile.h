#pragma once

#include <cairo.h>

#include <string>

namespace pictures {

/// Writes an image surface as a PNG that is quick to read: rows without a filter. Cairo's own writer lets libpng try a
/// filter for every row, and the intro then takes twice as long to decode (26 ms against 12), which the first frame
/// waits for; drawings in flat colours even become smaller. Throws std::runtime_error naming the file when it cannot be
/// written.
void WritePng(cairo_surface_t* surface, const std::string& path);

}  // namespace pictures
