#pragma once

#include <algorithm>
#include <cstdint>

#include "backend/Geometry.h"

namespace host {

/// A pixel of a Cairo image, premultiplied 0xAARRGGBB or opaque 0x??RRGGBB, as a colour with straight alpha.
inline Rgba StraightPixel(std::uint32_t pixel, bool isOpaque) {
    constexpr std::uint32_t kChannel = 0xff;
    constexpr int kAlphaShift = 24;
    constexpr int kRedShift = 16;
    constexpr int kGreenShift = 8;
    const std::uint32_t alpha = isOpaque ? kChannel : pixel >> kAlphaShift;
    if (alpha == 0) return {};
    const auto straight = [&](int shift) {
        const std::uint32_t channel = pixel >> shift & kChannel;
        if (alpha == kChannel) return static_cast<std::uint8_t>(channel);
        return static_cast<std::uint8_t>(std::min(kChannel, (channel * kChannel + alpha / 2) / alpha));
    };
    return {straight(kRedShift), straight(kGreenShift), straight(0), static_cast<std::uint8_t>(alpha)};
}

}  // namespace host
