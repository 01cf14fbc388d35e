#pragma once

#include <memory>
#include <string_view>

#include "backend/Painter.h"

namespace host {

/// The painter of a browser: a canvas for each surface, drawn on by painter.mjs. UI thread only. Its surfaces, pictures
/// and texts work with each other, not with those of another painter.
class CanvasPainter final : public Painter {
public:
    [[nodiscard]] std::unique_ptr<Surface> CreateSurface(PixelSize size, double scale) override;
    /// The package of a page has lossless WebP files in the place of PNG ones, which the page has decoded ahead.
    [[nodiscard]] std::shared_ptr<const Picture> DecodePicture(std::span<const std::byte> file) override;
    [[nodiscard]] std::shared_ptr<const Picture> CreatePicture(const Image& image) override;
    void SetLanguage(std::string_view language) override;
    [[nodiscard]] std::unique_ptr<TextLayout> CreateText(std::string_view utf8, const TextStyle& style,
                                                         double scale) override;

    /// The page's own canvas, made so large; what it held is lost. One at a time, of scale 1.
    [[nodiscard]] std::unique_ptr<Surface> OpenCanvas(PixelSize size);

private:
    int lastNumber_ = 0;  ///< of the surfaces and pictures
};

}  // namespace host
