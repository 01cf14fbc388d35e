#pragma once

#include <cairo.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "backend/Geometry.h"

namespace host {

inline constexpr std::size_t kPixelBytes = 4;
inline constexpr std::uint32_t kOpaqueAlpha = 255;

/// 32-bit pixels of four 8-bit channels, row by row from the top.
struct PixelRows {
    unsigned char* data = nullptr;
    std::size_t stride = 0;  ///< bytes from one row to the next
    PixelSize size;
};

/// The pixels of an image surface; none when the surface has an error or is empty.
inline PixelRows RowsOf(cairo_surface_t* image) {
    cairo_surface_flush(image);
    return {cairo_image_surface_get_data(image),
            static_cast<std::size_t>(cairo_image_surface_get_stride(image)),
            {cairo_image_surface_get_width(image), cairo_image_surface_get_height(image)}};
}

inline std::uint32_t LoadPixel(const unsigned char* bytes) {
    std::uint32_t pixel = 0;
    std::memcpy(&pixel, bytes, sizeof pixel);
    return pixel;
}

inline void StorePixel(std::uint32_t pixel, unsigned char* bytes) {
    std::memcpy(bytes, &pixel, sizeof pixel);
}

/// The channels of 0xAARRGGBB, whatever its alpha means.
inline Rgba UnpackedPixel(std::uint32_t pixel) {
    const auto channel = [pixel](int shift) { return static_cast<std::uint8_t>(pixel >> shift); };
    return {channel(16), channel(8), channel(0), channel(24)};
}

/// A colour as a pixel of a Cairo image with alpha: 0xAARRGGBB, each channel multiplied by the alpha.
inline std::uint32_t PremultipliedPixel(Rgba color) {
    const std::uint32_t alpha = color.alpha;
    const auto channel = [alpha](std::uint32_t value) { return (value * alpha + kOpaqueAlpha / 2) / kOpaqueAlpha; };
    return alpha << 24 | channel(color.red) << 16 | channel(color.green) << 8 | channel(color.blue);
}

/// A pixel of a Cairo image with alpha as a colour.
inline Rgba StraightColor(std::uint32_t premultiplied) {
    const Rgba color = UnpackedPixel(premultiplied);
    const std::uint32_t alpha = color.alpha;
    if (alpha == 0) return {};
    const auto channel = [alpha](std::uint32_t value) {
        return static_cast<std::uint8_t>(std::min(kOpaqueAlpha, (value * kOpaqueAlpha + alpha / 2) / alpha));
    };
    return {channel(color.red), channel(color.green), channel(color.blue), color.alpha};
}

}  // namespace host
