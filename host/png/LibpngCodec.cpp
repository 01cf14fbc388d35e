#include <png.h>
#include <zlib.h>

#include <bit>

#include "png/PngCodec.h"

namespace host {

namespace {

constexpr png_uint_32 kMachineFormat = std::endian::native == std::endian::little ? PNG_FORMAT_BGRA : PNG_FORMAT_ARGB;

}  // namespace

std::uint32_t PngChecksum(std::span<const std::byte> bytes) {
    const auto* const data = reinterpret_cast<const Bytef*>(bytes.data());
    return static_cast<std::uint32_t>(crc32_z(crc32_z(0, nullptr, 0), data, bytes.size()));
}

bool DecodePngPixels(std::span<const std::byte> file, PixelSize /*size*/, unsigned char* pixels, std::size_t stride) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_memory(&image, file.data(), file.size()) == 0) return false;
    image.format = kMachineFormat;
    const bool isDecoded =
        png_image_finish_read(&image, nullptr, pixels, static_cast<png_int_32>(stride), nullptr) != 0;
    png_image_free(&image);
    return isDecoded;
}

std::vector<std::byte> EncodePngRows(PixelSize size, PngChannels channels, std::span<const std::uint8_t> rows) {
    png_image file{};
    file.version = PNG_IMAGE_VERSION;
    file.width = static_cast<png_uint_32>(size.width);
    file.height = static_cast<png_uint_32>(size.height);
    file.format = channels == PngChannels::kRgb ? PNG_FORMAT_RGB : PNG_FORMAT_RGBA;
    file.flags = PNG_IMAGE_FLAG_FAST;
    png_alloc_size_t bytesNeeded = PNG_IMAGE_PNG_SIZE_MAX(file);
    std::vector<std::byte> bytes(bytesNeeded);
    const bool isWritten =
        png_image_write_to_memory(&file, bytes.data(), &bytesNeeded, 0, rows.data(), 0, nullptr) != 0;
    png_image_free(&file);
    bytes.resize(isWritten ? bytesNeeded : 0);
    return bytes;
}

}  // namespace host
