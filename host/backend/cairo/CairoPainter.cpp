#include "backend/cairo/CairoPainter.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "backend/cairo/CairoPicture.h"
#include "backend/cairo/CairoSurface.h"
#include "backend/cairo/PangoFonts.h"
#include "backend/cairo/PangoText.h"
#include "backend/cairo/PngFile.h"

namespace host {

namespace {

// A picture of more than 16 Mpx is none of this program's; decoding it would take 64 MiB and more.
constexpr std::int64_t kLargestPicturePixels = std::int64_t{16} * 1024 * 1024;

/// The size that a PNG file's first chunk promises; empty when there is none (ISO/IEC 15948, 5.2 and 11.2.2).
PixelSize PngSize(std::span<const std::byte> png) {
    constexpr std::array<unsigned char, 8> kSignature = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};
    constexpr std::size_t kWidthAt = 16;
    constexpr std::size_t kHeightAt = 20;
    constexpr std::size_t kNeeded = 24;
    constexpr std::size_t kBytesOfNumber = 4;
    constexpr int kBitsOfByte = 8;
    if (png.size() < kNeeded || std::memcmp(png.data(), kSignature.data(), kSignature.size()) != 0) return {};
    const auto numberAt = [&](std::size_t at) {
        std::uint32_t number = 0;
        for (std::size_t i = 0; i < kBytesOfNumber; ++i) {
            number = number << kBitsOfByte | std::to_integer<std::uint32_t>(png[at + i]);
        }
        return number;
    };
    const std::uint32_t width = numberAt(kWidthAt);
    const std::uint32_t height = numberAt(kHeightAt);
    if (width > INT16_MAX || height > INT16_MAX) return {};
    return {static_cast<int>(width), static_cast<int>(height)};
}

cairo_status_t ReadBytes(void* closure, unsigned char* data, unsigned int length) {
    auto& rest = *static_cast<std::span<const std::byte>*>(closure);
    if (rest.size() < length) return CAIRO_STATUS_READ_ERROR;
    std::memcpy(data, rest.data(), length);
    rest = rest.subspan(length);
    return CAIRO_STATUS_SUCCESS;
}

CairoSurfaceHandle MakeImage(cairo_format_t format, PixelSize size) {
    return CairoSurfaceHandle(cairo_image_surface_create(format, std::max(size.width, 0), std::max(size.height, 0)));
}

}  // namespace

CairoPainter::CairoPainter() = default;
CairoPainter::~CairoPainter() = default;

std::unique_ptr<Surface> CairoPainter::CreateSurface(PixelSize size, double scale) {
    return std::make_unique<CairoSurface>(MakeImage(CAIRO_FORMAT_ARGB32, size), scale);
}

std::unique_ptr<Surface> CairoPainter::CreateOpaqueSurface(PixelSize size) {
    return std::make_unique<CairoSurface>(MakeImage(CAIRO_FORMAT_RGB24, size), 1);
}

std::unique_ptr<Surface> CairoPainter::WrapPixels(unsigned char* pixels, int width, int height, int stride) {
    CairoSurfaceHandle image(cairo_image_surface_create_for_data(pixels, CAIRO_FORMAT_RGB24, width, height, stride));
    if (cairo_surface_status(image.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
    return std::make_unique<CairoSurface>(std::move(image), 1);
}

std::shared_ptr<const Picture> CairoPainter::DecodePicture(std::span<const std::byte> png) {
    const PixelSize promised = PngSize(png);
    const std::int64_t pixels = std::int64_t{promised.width} * promised.height;
    if (pixels == 0 || pixels > kLargestPicturePixels) return nullptr;
    CairoSurfaceHandle image(cairo_image_surface_create_from_png_stream(ReadBytes, &png));
    if (cairo_surface_status(image.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
    return std::make_shared<CairoPicture>(std::move(image));
}

std::shared_ptr<const Picture> CairoPainter::CreatePicture(PixelSize size, std::span<const Rgba> pixels) {
    if (size.width <= 0 || size.height <= 0) return nullptr;
    const std::size_t width = static_cast<std::size_t>(size.width);
    const std::size_t height = static_cast<std::size_t>(size.height);
    if (pixels.size() < width * height) return nullptr;
    constexpr std::uint32_t kFull = 255;
    const bool isOpaque = std::all_of(pixels.begin(), pixels.end(), [](Rgba pixel) { return pixel.alpha == kFull; });
    CairoSurfaceHandle image = MakeImage(isOpaque ? CAIRO_FORMAT_RGB24 : CAIRO_FORMAT_ARGB32, size);
    if (cairo_surface_status(image.get()) != CAIRO_STATUS_SUCCESS) return nullptr;

    const auto premultiplied = [](Rgba pixel) {
        const auto channel = [&](std::uint32_t value) { return (value * pixel.alpha + kFull / 2) / kFull; };
        return std::uint32_t{pixel.alpha} << 24 | channel(pixel.red) << 16 | channel(pixel.green) << 8 |
               channel(pixel.blue);
    };
    unsigned char* const data = cairo_image_surface_get_data(image.get());
    const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(image.get()));
    for (std::size_t y = 0; y < height; ++y) {
        for (std::size_t x = 0; x < width; ++x) {
            const std::uint32_t pixel = premultiplied(pixels[y * width + x]);
            std::memcpy(data + y * stride + x * sizeof pixel, &pixel, sizeof pixel);
        }
    }
    cairo_surface_mark_dirty(image.get());
    return std::make_shared<CairoPicture>(std::move(image));
}

void CairoPainter::SetLanguage(std::string_view language) {
    language_ = language;
    if (fonts_) fonts_->SetLanguage(language_);
}

std::unique_ptr<TextLayout> CairoPainter::CreateText(std::string_view utf8, const TextStyle& style, double scale) {
    if (!fonts_) fonts_ = std::make_unique<PangoFonts>(language_);
    return std::make_unique<PangoText>(*fonts_, utf8, style, scale);
}

bool CairoPainter::WritePng(const Surface& surface, const std::string& path) {
    const auto& own = static_cast<const CairoSurface&>(surface);
    return WritePngFile(own.Image(), path);
}

}  // namespace host
