// A PNG file of any bytes decodes into exactly the pixels that it promises, or not at all. Written again, it shows the
// same.

#include <png/PngPicture.h>
#include <png/PngWriter.h>
#include <zlib.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

#include "Require.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace {

constexpr std::size_t kPixelBytes = 4;
// What is tried again and again shall be quick; larger pictures are refused or decoded like smaller ones.
constexpr std::size_t kMostPixels = std::size_t{1} << 20U;

std::vector<std::uint8_t> Decode(const host::PngPicture& picture, bool& isWhole) {
    const auto width = static_cast<std::size_t>(picture.Size().width);
    std::vector<std::uint8_t> pixels(width * static_cast<std::size_t>(picture.Size().height) * kPixelBytes);
    isWhole = picture.DecodeInto(pixels.data(), width * kPixelBytes);
    return pixels;
}

// A length, a type, the content and a checksum of the last two, behind eight bytes of signature: ISO/IEC 15948, 5.
constexpr std::size_t kSignatureBytes = 8;
constexpr std::size_t kNumberBytes = 4;

std::uint32_t NumberAt(const std::uint8_t* at) {
    return std::uint32_t{at[0]} << 24U | std::uint32_t{at[1]} << 16U | std::uint32_t{at[2]} << 8U | at[3];
}

void MendChecksums(std::uint8_t* data, std::size_t size) {
    std::size_t at = kSignatureBytes;
    while (at + 3 * kNumberBytes <= size) {
        const std::size_t length = NumberAt(data + at);
        if (length > size - at - 3 * kNumberBytes) return;
        const auto sum = static_cast<std::uint32_t>(crc32_z(0, data + at + kNumberBytes, kNumberBytes + length));
        std::uint8_t* const place = data + at + 2 * kNumberBytes + length;
        for (std::size_t i = 0; i < kNumberBytes; ++i) place[i] = static_cast<std::uint8_t>(sum >> (24U - 8U * i));
        at += 3 * kNumberBytes + length;
    }
}

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                               unsigned int seed) {
    const std::size_t mutated = LLVMFuzzerMutate(data, size, maxSize);
    // Some stay damaged, which must be seen, too.
    constexpr unsigned kDamagedOneIn = 16;
    if (seed % kDamagedOneIn != 0) MendChecksums(data, mutated);
    return mutated;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const host::PngPicture picture(std::as_bytes(std::span(data, size)));
    const host::PixelSize dimensions = picture.Size();
    const auto count = static_cast<std::size_t>(dimensions.width) * static_cast<std::size_t>(dimensions.height);
    if (count == 0 || count > kMostPixels) return 0;
    bool isWhole = false;
    const std::vector<std::uint8_t> pixels = Decode(picture, isWhole);
    if (!isWhole) return 0;

    host::Image image{dimensions, {}};
    bool hasAlpha = false;
    for (std::size_t i = 0; i < count; ++i) {
        std::uint32_t argb = 0;
        std::memcpy(&argb, &pixels[i * kPixelBytes], sizeof argb);
        image.pixels.push_back({static_cast<std::uint8_t>(argb >> 16U), static_cast<std::uint8_t>(argb >> 8U),
                                static_cast<std::uint8_t>(argb), static_cast<std::uint8_t>(argb >> 24U)});
        hasAlpha = hasAlpha || image.pixels.back().alpha != UINT8_MAX;
    }
    Require(picture.HasAlpha() || !hasAlpha, "a picture without alpha is opaque");
    const std::vector<std::byte> written = host::EncodePng(image);
    const host::PngPicture again(written);
    Require(again.Size() == dimensions, "what is written has the same size");
    Require(Decode(again, isWhole) == pixels && isWhole, "what is written shows the same");
    return 0;
}
