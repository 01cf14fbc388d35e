#include "backend/web/CanvasPainter.h"

#include <string>
#include <utility>
#include <vector>

#include "backend/web/Bridge.h"
#include "backend/web/CanvasPicture.h"
#include "backend/web/CanvasSurface.h"
#include "backend/web/CanvasText.h"
#include "png/PngPicture.h"

namespace host {

CanvasPicture::CanvasPicture(int number, PixelSize size, const void* pixels) : number_(number), size_(size) {
    web_picture_create(number_, size_.width, size_.height, pixels);
}

CanvasPicture::~CanvasPicture() {
    web_picture_destroy(number_);
}

std::unique_ptr<Surface> CanvasPainter::CreateSurface(PixelSize size, double scale) {
    return std::make_unique<CanvasSurface>(++lastNumber_, size, scale);
}

std::unique_ptr<Surface> CanvasPainter::OpenCanvas(PixelSize size) {
    return std::make_unique<CanvasSurface>(0, size, 1);
}

std::shared_ptr<const Picture> CanvasPainter::DecodePicture(std::span<const std::byte> png) {
    constexpr std::size_t kPixelBytes = 4;
    const PngPicture file(png);
    const PixelSize size = file.Size();
    const std::size_t stride = static_cast<std::size_t>(size.width) * kPixelBytes;
    std::vector<unsigned char> pixels(stride * static_cast<std::size_t>(size.height));
    if (pixels.empty() || !file.DecodeInto(pixels.data(), stride)) return nullptr;
    // Blue comes first in the memory of a machine as a browser shows it, red in a canvas.
    for (std::size_t i = 0; i < pixels.size(); i += kPixelBytes) std::swap(pixels[i], pixels[i + 2]);
    return std::make_shared<CanvasPicture>(++lastNumber_, size, pixels.data());
}

std::shared_ptr<const Picture> CanvasPainter::CreatePicture(const Image& image) {
    const auto [width, height] = image.size;
    if (width <= 0 || height <= 0) return nullptr;
    if (image.pixels.size() / static_cast<std::size_t>(width) < static_cast<std::size_t>(height)) return nullptr;
    return std::make_shared<CanvasPicture>(++lastNumber_, image.size, image.pixels.data());
}

void CanvasPainter::SetLanguage(std::string_view language) {
    web_text_language(std::string(language).c_str());
}

std::unique_ptr<TextLayout> CanvasPainter::CreateText(std::string_view utf8, const TextStyle& style, double scale) {
    return std::make_unique<CanvasText>(utf8, style, scale);
}

}  // namespace host
