#include "backend/web/CanvasPainter.h"

#include <cstdint>
#include <cstring>
#include <optional>
#include <string>

#include "backend/web/Bridge.h"
#include "backend/web/CanvasPicture.h"
#include "backend/web/CanvasSurface.h"
#include "backend/web/CanvasText.h"

namespace host {

namespace {

// A lossless WebP file: "RIFF", its size, "WEBPVP8L", the stream's size, a signature byte, then the width and the
// height, each less one, in 14 bits: Google, "WebP Lossless Bitstream Specification", 3.
std::optional<PixelSize> WebpSize(std::span<const std::byte> file) {
    constexpr std::size_t kFormatAt = 8;
    constexpr std::size_t kSizeAt = 21;
    constexpr unsigned kSideBits = 14;
    constexpr std::uint32_t kSideMask = (1U << kSideBits) - 1;
    constexpr std::string_view kFormat = "WEBPVP8L";
    std::uint32_t sides = 0;
    if (file.size() < kSizeAt + sizeof sides) return std::nullopt;
    if (std::memcmp(file.data() + kFormatAt, kFormat.data(), kFormat.size()) != 0) return std::nullopt;
    std::memcpy(&sides, file.data() + kSizeAt, sizeof sides);
    return PixelSize{static_cast<int>(sides & kSideMask) + 1, static_cast<int>(sides >> kSideBits & kSideMask) + 1};
}

}  // namespace

CanvasPicture::~CanvasPicture() {
    web_picture_destroy(number_);
}

std::unique_ptr<Surface> CanvasPainter::CreateSurface(PixelSize size, double scale) {
    return std::make_unique<CanvasSurface>(++lastNumber_, size, scale);
}

std::unique_ptr<Surface> CanvasPainter::OpenCanvas(PixelSize size) {
    return std::make_unique<CanvasSurface>(0, size, 1);
}

std::shared_ptr<const Picture> CanvasPainter::DecodePicture(std::span<const std::byte> file) {
    const std::optional<PixelSize> size = WebpSize(file);
    if (!size || web_picture_take(++lastNumber_, file.data(), static_cast<int>(file.size())) == 0) return nullptr;
    return std::make_shared<CanvasPicture>(lastNumber_, *size);
}

std::shared_ptr<const Picture> CanvasPainter::CreatePicture(const Image& image) {
    const auto [width, height] = image.size;
    if (width <= 0 || height <= 0) return nullptr;
    if (image.pixels.size() / static_cast<std::size_t>(width) < static_cast<std::size_t>(height)) return nullptr;
    web_picture_create(++lastNumber_, width, height, image.pixels.data());
    return std::make_shared<CanvasPicture>(lastNumber_, image.size);
}

void CanvasPainter::SetLanguage(std::string_view language) {
    web_text_language(std::string(language).c_str());
}

std::unique_ptr<TextLayout> CanvasPainter::CreateText(std::string_view utf8, const TextStyle& style, double scale) {
    return std::make_unique<CanvasText>(utf8, style, scale);
}

}  // namespace host
