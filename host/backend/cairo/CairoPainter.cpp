#include "backend/cairo/CairoPainter.h"

#include <algorithm>
#include <utility>

#include "backend/cairo/CairoPicture.h"
#include "backend/cairo/CairoPixel.h"
#include "backend/cairo/CairoSurface.h"
#include "backend/cairo/PangoFonts.h"
#include "backend/cairo/PangoText.h"
#include "png/PngPicture.h"

namespace host {

namespace {

CairoSurfaceHandle MakeImage(cairo_format_t format, PixelSize size) {
    return CairoSurfaceHandle(cairo_image_surface_create(format, std::max(size.width, 0), std::max(size.height, 0)));
}

cairo_format_t FormatFor(bool hasAlpha) {
    return hasAlpha ? CAIRO_FORMAT_ARGB32 : CAIRO_FORMAT_RGB24;
}

/// From straight alpha to Cairo's.
void Premultiply(const PixelRows& rows) {
    for (int y = 0; y < rows.size.height; ++y) {
        unsigned char* pixel = rows.data + static_cast<std::size_t>(y) * rows.stride;
        for (int x = 0; x < rows.size.width; ++x, pixel += kPixelBytes) {
            StorePixel(PremultipliedPixel(UnpackedPixel(LoadPixel(pixel))), pixel);
        }
    }
}

}  // namespace

std::string CairoPainter::Libraries() {
    return std::string("Cairo ") + cairo_version_string() + ", Pango " + pango_version_string();
}

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
    const PngPicture file(png);
    CairoSurfaceHandle image = MakeImage(FormatFor(file.HasAlpha()), file.Size());
    const PixelRows rows = RowsOf(image.get());
    // Of an empty picture or without memory there are no rows.
    if (rows.data == nullptr || !file.DecodeInto(rows.data, rows.stride)) return nullptr;
    if (file.HasAlpha()) Premultiply(rows);
    cairo_surface_mark_dirty(image.get());
    return std::make_shared<CairoPicture>(std::move(image));
}

std::shared_ptr<const Picture> CairoPainter::CreatePicture(const Image& image) {
    const auto [width, height] = image.size;
    if (width <= 0 || height <= 0) return nullptr;
    if (image.pixels.size() / static_cast<std::size_t>(width) < static_cast<std::size_t>(height)) return nullptr;
    const bool hasAlpha = std::any_of(image.pixels.begin(), image.pixels.end(),
                                      [](const Rgba& pixel) { return pixel.alpha != kOpaqueAlpha; });
    CairoSurfaceHandle copy = MakeImage(FormatFor(hasAlpha), image.size);
    const PixelRows rows = RowsOf(copy.get());
    if (rows.data == nullptr) return nullptr;
    const Rgba* source = image.pixels.data();
    for (int y = 0; y < height; ++y) {
        unsigned char* target = rows.data + static_cast<std::size_t>(y) * rows.stride;
        for (int x = 0; x < width; ++x, target += kPixelBytes) StorePixel(PremultipliedPixel(*source++), target);
    }
    cairo_surface_mark_dirty(copy.get());
    return std::make_shared<CairoPicture>(std::move(copy));
}

void CairoPainter::SetLanguage(std::string_view language) {
    language_ = language;
    if (fonts_) fonts_->SetLanguage(language_);
}

std::unique_ptr<TextLayout> CairoPainter::CreateText(std::string_view utf8, const TextStyle& style, double scale) {
    if (!fonts_) fonts_ = std::make_unique<PangoFonts>(language_);
    return std::make_unique<PangoText>(*fonts_, utf8, style, scale);
}

}  // namespace host
