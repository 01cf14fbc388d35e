#include "backend/cairo/PngFile.h"

#include <png.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "backend/cairo/CairoPixel.h"

namespace host {

bool WritePngFile(cairo_surface_t* image, const std::string& path) {
    cairo_surface_flush(image);
    const int width = cairo_image_surface_get_width(image);
    const int height = cairo_image_surface_get_height(image);
    const unsigned char* const pixels = cairo_image_surface_get_data(image);
    if (pixels == nullptr) return false;
    const bool isOpaque = cairo_image_surface_get_format(image) == CAIRO_FORMAT_RGB24;

    png_image file{};
    file.version = PNG_IMAGE_VERSION;
    file.width = static_cast<png_uint_32>(width);
    file.height = static_cast<png_uint_32>(height);
    file.format = isOpaque ? PNG_FORMAT_RGB : PNG_FORMAT_RGBA;
    file.flags = PNG_IMAGE_FLAG_FAST;
    std::vector<png_byte> bytes;
    bytes.reserve(PNG_IMAGE_SIZE(file));
    for (int y = 0; y < height; ++y) {
        const unsigned char* const row = pixels + std::ptrdiff_t{y} * cairo_image_surface_get_stride(image);
        for (int x = 0; x < width; ++x) {
            std::uint32_t pixel = 0;
            std::memcpy(&pixel, row + std::ptrdiff_t{x} * static_cast<std::ptrdiff_t>(sizeof pixel), sizeof pixel);
            const Rgba straight = StraightPixel(pixel, isOpaque);
            bytes.insert(bytes.end(), {straight.red, straight.green, straight.blue});
            if (!isOpaque) bytes.push_back(straight.alpha);
        }
    }
    const bool isWritten = png_image_write_to_file(&file, path.c_str(), 0, bytes.data(), 0, nullptr) != 0;
    png_image_free(&file);
    return isWritten;
}

}  // namespace host
