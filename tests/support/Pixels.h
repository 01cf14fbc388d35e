#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "backend/Painter.h"

/// The pixel there as straight RGBA; transparent outside.
inline host::Rgba PixelAt(const host::Surface& surface, int x, int y) {
    return surface.Read({x, y, 1, 1}).pixels.front();
}

/// Channel by channel, as rounding may differ by one or two.
inline testing::AssertionResult IsNear(host::Rgba actual, host::Rgba expected, int tolerance = 2) {
    const int worst = std::max({std::abs(actual.red - expected.red), std::abs(actual.green - expected.green),
                                std::abs(actual.blue - expected.blue), std::abs(actual.alpha - expected.alpha)});
    if (worst <= tolerance) return testing::AssertionSuccess();
    return testing::AssertionFailure() << "is " << +actual.red << ',' << +actual.green << ',' << +actual.blue << ','
                                       << +actual.alpha;
}

/// The smallest rectangle around everything that is not transparent.
inline host::PixelRect DrawnExtent(const host::Surface& surface) {
    const auto [width, height] = surface.Size();
    const host::Image image = surface.Read({0, 0, width, height});
    host::PixelRect extent;
    auto pixel = image.pixels.begin();
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x, ++pixel) {
            if (pixel->alpha != 0) extent = extent.Union({x, y, 1, 1});
        }
    }
    return extent;
}
