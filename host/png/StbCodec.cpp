#define STB_IMAGE_STATIC
#define STB_IMAGE_IMPLEMENTATION
#define STBI_ONLY_PNG
#define STBI_NO_STDIO
#include <stb_image.h>
#define STB_IMAGE_WRITE_STATIC
#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STBI_WRITE_NO_STDIO
#include <stb_image_write.h>

#include <algorithm>
#include <array>
#include <memory>

#include "png/PngCodec.h"

namespace host {

namespace {

constexpr std::size_t kPixelBytes = 4;

struct StbReleaser {
    void operator()(stbi_uc* pixels) const noexcept { stbi_image_free(pixels); }
};

}  // namespace

std::uint32_t PngChecksum(std::span<const std::byte> bytes) {
    constexpr std::uint32_t kPolynomial = 0xEDB88320;  // ISO/IEC 15948, annex D
    constexpr int kByteBits = 8;
    constexpr std::uint32_t kByteMask = 0xFF;
    static const auto kTable = [] {
        std::array<std::uint32_t, kByteMask + 1> table{};
        for (std::uint32_t i = 0; i < table.size(); ++i) {
            table[i] = i;
            for (int bit = 0; bit < kByteBits; ++bit) {
                table[i] = table[i] >> 1U ^ ((table[i] & 1U) != 0 ? kPolynomial : 0);
            }
        }
        return table;
    }();
    std::uint32_t checksum = ~std::uint32_t{0};
    for (const std::byte byte : bytes) {
        checksum = kTable[(checksum ^ std::to_integer<std::uint32_t>(byte)) & kByteMask] ^ checksum >> kByteBits;
    }
    return ~checksum;
}

bool DecodePngPixels(std::span<const std::byte> file, PixelSize size, unsigned char* pixels, std::size_t stride) {
    int width = 0;
    int height = 0;
    int channels = 0;
    const std::unique_ptr<stbi_uc, StbReleaser> decoded(
        stbi_load_from_memory(reinterpret_cast<const stbi_uc*>(file.data()), static_cast<int>(file.size()), &width,
                              &height, &channels, kPixelBytes));
    if (!decoded || PixelSize{width, height} != size) return false;
    const stbi_uc* from = decoded.get();
    for (int y = 0; y < height; ++y) {
        unsigned char* to = pixels + static_cast<std::size_t>(y) * stride;
        // 0xAARRGGBB, the lowest byte first: a browser's memory is little endian.
        for (int x = 0; x < width; ++x, from += kPixelBytes, to += kPixelBytes) {
            to[0] = from[2];
            to[1] = from[1];
            to[2] = from[0];
            to[3] = from[3];
        }
    }
    return true;
}

std::vector<std::byte> EncodePngRows(PixelSize size, PngChannels channels, std::span<const std::uint8_t> rows) {
    std::vector<std::byte> bytes;
    const int count = static_cast<int>(channels);
    const auto append = [](void* to, void* data, int dataBytes) {
        const auto* const from = static_cast<const std::byte*>(data);
        static_cast<std::vector<std::byte>*>(to)->assign(from, from + dataBytes);
    };
    if (size.width <= 0 || size.height <= 0) return bytes;
    static_cast<void>(
        stbi_write_png_to_func(append, &bytes, size.width, size.height, count, rows.data(), size.width * count));
    return bytes;
}

}  // namespace host
