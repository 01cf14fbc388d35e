#include "PngFile.h"

#include <png.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <vector>

namespace pictures {

namespace {

constexpr int kBitDepth = 8;
constexpr int kBestCompression = 9;
constexpr std::uint32_t kByte = 0xFF;
constexpr std::uint32_t kOpaque = 0xFF;

/// The file is put together in memory, so nothing but a lack of memory or a fault of ours ends up here, and libpng may
/// not be returned to.
[[noreturn]] void Fail(png_structp, png_const_charp message) {
    std::cerr << "brevant_pictures: libpng: " << message << '\n';
    std::exit(EXIT_FAILURE);
}

void Append(png_structp png, png_bytep bytes, std::size_t count) {
    static_cast<std::string*>(png_get_io_ptr(png))->append(reinterpret_cast<const char*>(bytes), count);
}

/// From Cairo's premultiplied native words to the file's bytes.
void ConvertRow(const std::uint32_t* from, int width, bool hasAlpha, std::vector<png_byte>& row) {
    row.clear();
    for (int x = 0; x < width; ++x) {
        const std::uint32_t pixel = from[x];
        const std::uint32_t alpha = hasAlpha ? pixel >> 24 : kOpaque;
        for (const int shift : {16, 8, 0}) {
            const std::uint32_t channel = pixel >> shift & kByte;
            row.push_back(static_cast<png_byte>(alpha == 0 ? 0 : (channel * kOpaque + alpha / 2) / alpha));
        }
        if (hasAlpha) {
            row.push_back(static_cast<png_byte>(alpha));
        }
    }
}

}  // namespace

void WritePng(cairo_surface_t* surface, const std::string& path) {
    cairo_surface_flush(surface);
    const int width = cairo_image_surface_get_width(surface);
    const int height = cairo_image_surface_get_height(surface);
    const int stride = cairo_image_surface_get_stride(surface);
    const unsigned char* data = cairo_image_surface_get_data(surface);
    const bool hasAlpha = cairo_image_surface_get_format(surface) == CAIRO_FORMAT_ARGB32;

    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, &Fail, nullptr);
    png_infop info = png_create_info_struct(png);
    std::string encoded;
    png_set_write_fn(png, &encoded, &Append, nullptr);
    png_set_IHDR(png, info, static_cast<png_uint_32>(width), static_cast<png_uint_32>(height), kBitDepth,
                 hasAlpha ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_filter(png, PNG_FILTER_TYPE_BASE, PNG_FILTER_NONE);
    png_set_compression_level(png, kBestCompression);
    png_write_info(png, info);
    std::vector<png_byte> row;
    for (int y = 0; y < height; ++y) {
        ConvertRow(reinterpret_cast<const std::uint32_t*>(data + static_cast<std::ptrdiff_t>(y) * stride), width,
                   hasAlpha, row);
        png_write_row(png, row.data());
    }
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);

    std::ofstream file(path, std::ios::binary);
    file << encoded;
    file.close();
    if (!file) {
        throw std::runtime_error(path + ": cannot be written");
    }
}

}  // namespace pictures
