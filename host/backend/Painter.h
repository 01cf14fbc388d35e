#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

#include "backend/Geometry.h"
#include "backend/Image.h"

namespace host {

/// A decoded picture. Immutable, shared between every control that shows it.
class Picture {
public:
    virtual ~Picture() = default;

    /// The picture's own size in its own pixels.
    [[nodiscard]] virtual PixelSize Size() const = 0;
};

enum class HorizontalAlign { kLeft, kCenter, kRight };
enum class VerticalAlign { kTop, kMiddle, kBottom };
enum class TextWrap { kOneLine, kWords };
enum class FontWeight { kNormal, kBold };

/// How a text is set, by the rules in text/LineBreaking.h; sizes in the units of the surface that it will be drawn on.
struct TextStyle {
    double size = 24;  ///< height of the em square
    FontWeight weight = FontWeight::kNormal;
    HorizontalAlign align = HorizontalAlign::kLeft;
    TextWrap wrap = TextWrap::kOneLine;
    double maxWidth = 0;   ///< 0: as wide as it gets; else lines break or end in an ellipsis there
    double maxHeight = 0;  ///< 0: as high as it gets; else the text ends in an ellipsis there
};

/// A text that has been shaped once and is drawn many times.
class TextLayout {
public:
    virtual ~TextLayout() = default;

    /// The extent of the lines as set, never wider than the style's maxWidth.
    [[nodiscard]] virtual SizeF Measure() const = 0;
    /// True when something of the text had to be left out.
    [[nodiscard]] virtual bool IsEllipsized() const = 0;
};

/// A rectangle of pixels that can be drawn on. Drawing takes place in the surface's own units; one unit is Scale()
/// device pixels. Every operation blends by alpha, is clipped to the surface and the current clip, and is antialiased.
/// UI thread only.
class Surface {
public:
    virtual ~Surface() = default;

    /// Device pixels.
    [[nodiscard]] virtual PixelSize Size() const = 0;
    [[nodiscard]] virtual double Scale() const = 0;

    /// Replaces every pixel inside the clip, alpha included, without blending.
    virtual void Clear(Rgba color) = 0;
    virtual void FillRectangle(const RectF& rect, Rgba color) = 0;
    /// The line lies half inside and half outside `rect`, as for every outline below.
    virtual void StrokeRectangle(const RectF& rect, double lineWidth, Rgba color) = 0;
    virtual void FillEllipse(const RectF& rect, Rgba color) = 0;
    virtual void StrokeEllipse(const RectF& rect, double lineWidth, Rgba color) = 0;
    /// `arcWidth` and `arcHeight` are the whole axes of the corner's ellipse, so a corner's radius is half of them.
    virtual void FillRoundRectangle(const RectF& rect, double arcWidth, double arcHeight, Rgba color) = 0;
    virtual void StrokeRoundRectangle(const RectF& rect, double arcWidth, double arcHeight, double lineWidth,
                                      Rgba color) = 0;
    /// A vertical gradient from `top` to `bottom`, in a rectangle with rounded corners.
    virtual void FillGradient(const RectF& rect, double arcWidth, double arcHeight, Rgba top, Rgba bottom) = 0;
    /// Scaled into `rect`, smoothly. The scaled copy is kept with the picture, so that it is scaled once a size.
    virtual void DrawPicture(const RectF& rect, const Picture& picture) = 0;
    /// `topLeft` is that of the layout's Measure().
    virtual void DrawText(const TextLayout& text, PointF topLeft, Rgba color) = 0;
    /// As DrawText, with an edge of `edgeWidth` around every glyph in `edge`, for texts on a colour like their own.
    virtual void DrawTextWithEdge(const TextLayout& text, PointF topLeft, Rgba color, double edgeWidth, Rgba edge) = 0;

    /// Further drawing is confined to `clip` (device pixels of this surface) until ResetClip; clips do not nest.
    virtual void SetClip(const PixelRect& clip) = 0;
    virtual void ResetClip() = 0;

    enum class Blend { kOver, kReplace };
    /// Puts `source` pixel for pixel with its top left at (x, y), in device pixels. kReplace copies without blending.
    virtual void Compose(const Surface& source, int x, int y, Blend blend) = 0;

    /// What `area` (device pixels) shows now, as straight RGBA; transparent outside of the surface.
    [[nodiscard]] virtual Image Read(const PixelRect& area) const = 0;
};

/// Makes surfaces, pictures and texts. UI thread only.
class Painter {
public:
    virtual ~Painter() = default;

    /// A transparent surface of `size` device pixels whose unit is `scale` device pixels.
    [[nodiscard]] virtual std::unique_ptr<Surface> CreateSurface(PixelSize size, double scale) = 0;
    /// Null when the bytes are no PNG file that can be decoded whole.
    [[nodiscard]] virtual std::shared_ptr<const Picture> DecodePicture(std::span<const std::byte> png) = 0;
    /// Null when there are fewer pixels than the size says, or none.
    [[nodiscard]] virtual std::shared_ptr<const Picture> CreatePicture(const Image& image) = 0;
    /// The language of the texts that are made from now on, as in "ja"; English at first. Chinese, Japanese and Korean
    /// share characters that each of them writes differently, so the language decides on their glyphs.
    virtual void SetLanguage(std::string_view language) = 0;
    [[nodiscard]] virtual std::unique_ptr<TextLayout> CreateText(std::string_view utf8, const TextStyle& style,
                                                                 double scale) = 0;
};

}  // namespace host
