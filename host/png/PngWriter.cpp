#include "png/PngWriter.h"

#include <png.h>

#include <algorithm>
#include <cstdint>

namespace host {

std::vector<std::byte> EncodePng(const Image& image) {
    constexpr std::uint8_t kOpaque = 255;
    const bool isOpaque =
        std::all_of(image.pixels.begin(), image.pixels.end(), [](const Rgba& pixel) { return pixel.alpha == kOpaque; });
    std::vector<png_byte> rows;
    rows.reserve(image.pixels.size() * (isOpaque ? 3 : 4));
    for (const Rgba& pixel : image.pixels) {
        rows.insert(rows.end(), {pixel.red, pixel.green, pixel.blue});
        if (!isOpaque) rows.push_back(pixel.alpha);
    }

    png_image file{};
    file.version = PNG_IMAGE_VERSION;
    file.width = static_cast<png_uint_32>(image.size.width);
    file.height = static_cast<png_uint_32>(image.size.height);
    file.format = isOpaque ? PNG_FORMAT_RGB : PNG_FORMAT_RGBA;
    file.flags = PNG_IMAGE_FLAG_FAST;
    png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(file);
    std::vector<std::byte> bytes(size);
    const bool isWritten = png_image_write_to_memory(&file, bytes.data(), &size, 0, rows.data(), 0, nullptr) != 0;
    png_image_free(&file);
    bytes.resize(isWritten ? size : 0);
    return bytes;
}

}  // namespace host
