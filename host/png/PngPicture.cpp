#include "png/PngPicture.h"

#include <array>
#include <cstring>
#include <optional>

#include "png/PngCodec.h"

namespace host {

namespace {

// A picture of more than 16 Mpx is none of this program's; decoding it would take 64 MiB and more.
constexpr std::int64_t kLargestPicturePixels = std::int64_t{16} * 1024 * 1024;
// Further than this Cairo's images do not reach.
constexpr std::uint32_t kLargestSide = INT16_MAX;

/// A chunk: its length, its type, its content, and the checksum of type and content (ISO/IEC 15948, 5.3).
struct Chunk {
    std::uint32_t type = 0;
    std::span<const std::byte> content;
};

constexpr std::size_t kNumberBytes = 4;
constexpr std::size_t kFrameBytes = 3 * kNumberBytes;

constexpr std::uint32_t TypeOf(const char (&name)[kNumberBytes + 1]) {
    constexpr int kByteBits = 8;
    std::uint32_t type = 0;
    for (std::size_t i = 0; i < kNumberBytes; ++i) type = type << kByteBits | static_cast<unsigned char>(name[i]);
    return type;
}

std::uint32_t NumberAt(std::span<const std::byte> bytes, std::size_t at) {
    constexpr int kByteBits = 8;
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < kNumberBytes; ++i) {
        number = number << kByteBits | std::to_integer<std::uint32_t>(bytes[at + i]);
    }
    return number;
}

/// The first chunk of `rest`, which then begins behind it; empty when there is no whole one.
std::optional<Chunk> TakeChunk(std::span<const std::byte>& rest) {
    if (rest.size() < kFrameBytes) return std::nullopt;
    const std::size_t length = NumberAt(rest, 0);
    if (length > rest.size() - kFrameBytes) return std::nullopt;
    const auto checked = rest.subspan(kNumberBytes, kNumberBytes + length);
    const std::uint32_t checksum = NumberAt(rest, 2 * kNumberBytes + length);
    if (PngChecksum(checked) != checksum) return std::nullopt;
    const Chunk chunk{NumberAt(checked, 0), checked.subspan(kNumberBytes)};
    rest = rest.subspan(kFrameBytes + length);
    return chunk;
}

/// What the header says, when every chunk up to the end is whole.
struct Header {
    PixelSize size;
    bool hasAlpha = false;
};
std::optional<Header> ReadChunks(std::span<const std::byte> rest) {
    constexpr std::array<unsigned char, 8> kSignature = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};
    constexpr std::size_t kHeaderBytes = 13;
    constexpr std::size_t kColorTypeAt = 9;
    constexpr unsigned kAlphaUsed = 4;  // ISO/IEC 15948, 11.2.2
    if (rest.size() < kSignature.size() || std::memcmp(rest.data(), kSignature.data(), kSignature.size()) != 0)
        return std::nullopt;
    rest = rest.subspan(kSignature.size());

    const std::optional<Chunk> first = TakeChunk(rest);
    if (!first || first->type != TypeOf("IHDR") || first->content.size() != kHeaderBytes) return std::nullopt;
    const std::uint32_t width = NumberAt(first->content, 0);
    const std::uint32_t height = NumberAt(first->content, kNumberBytes);
    if (width == 0 || height == 0 || width > kLargestSide || height > kLargestSide) return std::nullopt;
    const auto colorType = std::to_integer<unsigned>(first->content[kColorTypeAt]);
    Header header{{static_cast<int>(width), static_cast<int>(height)}, (colorType & kAlphaUsed) != 0};

    while (const std::optional<Chunk> chunk = TakeChunk(rest)) {
        if (chunk->type == TypeOf("IEND")) return header;
        // Of a colour table, or of one colour that stands for nothing.
        if (chunk->type == TypeOf("tRNS")) header.hasAlpha = true;
    }
    return std::nullopt;
}

}  // namespace

PngPicture::PngPicture(std::span<const std::byte> file) : file_(file) {
    const std::optional<Header> header = ReadChunks(file);
    if (!header || std::int64_t{header->size.width} * header->size.height > kLargestPicturePixels) return;
    size_ = header->size;
    hasAlpha_ = header->hasAlpha;
}

bool PngPicture::DecodeInto(unsigned char* pixels, std::size_t stride) const {
    if (size_ == PixelSize{}) return false;
    return DecodePngPixels(file_, size_, pixels, stride);
}

}  // namespace host
