#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "backend/Painter.h"

namespace host {

class PangoFonts;

/// The painter that every back end with a processor's memory to draw in shares: Cairo for shapes and pictures, Pango
/// for texts. UI thread only. Its surfaces, pictures and texts work with each other, not with those of another painter.
class CairoPainter final : public Painter {
public:
    /// Cairo and Pango with their versions.
    [[nodiscard]] static std::string Libraries();

    CairoPainter();
    ~CairoPainter() override;
    CairoPainter(const CairoPainter&) = delete;
    CairoPainter& operator=(const CairoPainter&) = delete;

    [[nodiscard]] std::unique_ptr<Surface> CreateSurface(PixelSize size, double scale) override;
    [[nodiscard]] std::shared_ptr<const Picture> DecodePicture(std::span<const std::byte> png) override;
    [[nodiscard]] std::shared_ptr<const Picture> CreatePicture(const Image& image) override;
    void SetLanguage(std::string_view language) override;
    [[nodiscard]] std::unique_ptr<TextLayout> CreateText(std::string_view utf8, const TextStyle& style,
                                                         double scale) override;

    /// A surface without alpha for a window's pixels: black at first, scale 1.
    [[nodiscard]] std::unique_ptr<Surface> CreateOpaqueSurface(PixelSize size);
    /// A surface without alpha and of scale 1 on somebody else's pixels, which must outlive it. A pixel is 32 bits in
    /// the machine's byte order, 0x??RRGGBB; `stride` is the bytes from one row to the next. Null when Cairo cannot
    /// draw on pixels laid out like that.
    [[nodiscard]] std::unique_ptr<Surface> WrapPixels(unsigned char* pixels, int width, int height, int stride);

private:
    /// Made for the first text: finding the fonts takes 10 ms and 10 MiB, and neither the splash nor the play screen
    /// has a text to wait for.
    std::unique_ptr<PangoFonts> fonts_;
    std::string language_ = "en";
};

}  // namespace host
