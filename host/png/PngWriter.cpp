#include "png/PngWriter.h"

#include <algorithm>
#include <cstdint>

#include "png/PngCodec.h"

namespace host {

std::vector<std::byte> EncodePng(const Image& image) {
    constexpr std::uint8_t kOpaque = 255;
    const bool isOpaque =
        std::all_of(image.pixels.begin(), image.pixels.end(), [](const Rgba& pixel) { return pixel.alpha == kOpaque; });
    std::vector<std::uint8_t> rows;
    rows.reserve(image.pixels.size() * static_cast<std::size_t>(isOpaque ? PngChannels::kRgb : PngChannels::kRgba));
    for (const Rgba& pixel : image.pixels) {
        rows.insert(rows.end(), {pixel.red, pixel.green, pixel.blue});
        if (!isOpaque) rows.push_back(pixel.alpha);
    }

    return EncodePngRows(image.size, isOpaque ? PngChannels::kRgb : PngChannels::kRgba, rows);
}

}  // namespace host
