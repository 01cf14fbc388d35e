#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "backend/Geometry.h"

namespace host {

// What a library does for this folder. One of the files that implement it is compiled: LibpngCodec.cpp, or StbCodec.cpp
// where libpng is not to be had. Any thread.

/// The checksum of a chunk's type and content (ISO/IEC 15948, 5.5).
[[nodiscard]] std::uint32_t PngChecksum(std::span<const std::byte> bytes);

/// As PngPicture::DecodeInto, of a file whose chunks are whole and whose header says `size`.
[[nodiscard]] bool DecodePngPixels(std::span<const std::byte> file, PixelSize size, unsigned char* pixels,
                                   std::size_t stride);

enum class PngChannels { kRgb = 3, kRgba = 4 };
/// A file of `rows`, a byte a channel and no gap between the rows; empty without memory or pixels.
[[nodiscard]] std::vector<std::byte> EncodePngRows(PixelSize size, PngChannels channels,
                                                   std::span<const std::uint8_t> rows);

}  // namespace host
