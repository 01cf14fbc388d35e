#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "backend/Geometry.h"

namespace host {

/// A picture as the bytes of a PNG file, which must outlive it. What its chunks promise is held against the bytes that
/// are there before anything is decoded, so that a small file takes little memory. Any thread.
class PngPicture {
public:
    explicit PngPicture(std::span<const std::byte> file);

    /// Empty when the bytes are no whole PNG file (a checksum fails, a chunk ends behind the file's end), or its
    /// picture is larger than any screen's.
    [[nodiscard]] PixelSize Size() const { return size_; }
    /// Whether some pixel may be transparent.
    [[nodiscard]] bool HasAlpha() const { return hasAlpha_; }

    /// Decodes into rows of 32-bit pixels 0xAARRGGBB in the machine's byte order, with straight alpha. `stride` is the
    /// bytes from one row to the next; `pixels` has room for Size(). False when the picture does not decode whole.
    [[nodiscard]] bool DecodeInto(unsigned char* pixels, std::size_t stride) const;

private:
    std::span<const std::byte> file_;
    PixelSize size_;
    bool hasAlpha_ = false;
};

}  // namespace host
