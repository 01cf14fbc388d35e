#include "backend/web/CanvasSurface.h"

#include <algorithm>
#include <cmath>

#include "backend/web/Bridge.h"
#include "backend/web/CanvasPicture.h"
#include "backend/web/CanvasText.h"

namespace host {

namespace {

constexpr int kCanvas = 0;

std::uint32_t Packed(Rgba color) {
    return std::uint32_t{color.red} << 24U | std::uint32_t{color.green} << 16U | std::uint32_t{color.blue} << 8U |
           std::uint32_t{color.alpha};
}

bool IsEmpty(const RectF& rect) {
    return !(rect.width > 0 && rect.height > 0);
}

}  // namespace

CanvasSurface::CanvasSurface(int number, PixelSize size, double scale)
    : number_(number), size_{std::max(size.width, 0), std::max(size.height, 0)}, scale_(scale > 0 ? scale : 1) {
    web_surface_create(number_, size_.width, size_.height);
}

CanvasSurface::~CanvasSurface() {
    if (number_ != kCanvas) web_surface_destroy(number_);
}

void CanvasSurface::Clear(Rgba color) {
    web_surface_clear(number_, Packed(color));
}

void CanvasSurface::Draw(Shape shape, const RectF& rect, double arcWidth, double arcHeight, double lineWidth,
                         Rgba color) {
    if (IsEmpty(rect) || color.alpha == 0) return;
    web_surface_shape(number_, static_cast<int>(shape), rect.x * scale_, rect.y * scale_, rect.width * scale_,
                      rect.height * scale_, arcWidth * scale_, arcHeight * scale_, lineWidth * scale_, Packed(color));
}

void CanvasSurface::FillRectangle(const RectF& rect, Rgba color) {
    Draw(Shape::kRectangle, rect, 0, 0, 0, color);
}

void CanvasSurface::StrokeRectangle(const RectF& rect, double lineWidth, Rgba color) {
    if (lineWidth > 0) Draw(Shape::kRectangle, rect, 0, 0, lineWidth, color);
}

void CanvasSurface::FillEllipse(const RectF& rect, Rgba color) {
    Draw(Shape::kEllipse, rect, 0, 0, 0, color);
}

void CanvasSurface::StrokeEllipse(const RectF& rect, double lineWidth, Rgba color) {
    if (lineWidth > 0) Draw(Shape::kEllipse, rect, 0, 0, lineWidth, color);
}

void CanvasSurface::FillRoundRectangle(const RectF& rect, double arcWidth, double arcHeight, Rgba color) {
    Draw(Shape::kRoundRectangle, rect, arcWidth, arcHeight, 0, color);
}

void CanvasSurface::StrokeRoundRectangle(const RectF& rect, double arcWidth, double arcHeight, double lineWidth,
                                         Rgba color) {
    if (lineWidth > 0) Draw(Shape::kRoundRectangle, rect, arcWidth, arcHeight, lineWidth, color);
}

void CanvasSurface::FillGradient(const RectF& rect, double arcWidth, double arcHeight, Rgba top, Rgba bottom) {
    if (IsEmpty(rect)) return;
    web_surface_gradient(number_, rect.x * scale_, rect.y * scale_, rect.width * scale_, rect.height * scale_,
                         arcWidth * scale_, arcHeight * scale_, Packed(top), Packed(bottom));
}

void CanvasSurface::DrawPicture(const RectF& rect, const Picture& picture) {
    if (IsEmpty(rect)) return;
    // Whole device pixels: the picture's edge is then as sharp as it was drawn.
    const double left = Snapped(rect.x);
    const double top = Snapped(rect.y);
    const double width = std::max(1.0, Snapped(rect.x + rect.width) - left);
    const double height = std::max(1.0, Snapped(rect.y + rect.height) - top);
    web_surface_picture(number_, static_cast<const CanvasPicture&>(picture).Number(), left, top, width, height);
}

void CanvasSurface::DrawText(const TextLayout& text, PointF topLeft, Rgba color) {
    DrawTextWithEdge(text, topLeft, color, 0, {});
}

void CanvasSurface::DrawTextWithEdge(const TextLayout& text, PointF topLeft, Rgba color, double edgeWidth, Rgba edge) {
    const auto& own = static_cast<const CanvasText&>(text);
    const double left = Snapped(topLeft.x);
    double baseline = Snapped(topLeft.y) + own.Ascent();
    for (const CanvasText::Line& line : own.Lines()) {
        web_surface_text(number_, line.text.data(), static_cast<int>(line.text.size()), own.FontSize(),
                         own.IsBold() ? 1 : 0, left + line.indent, std::round(baseline), Packed(color),
                         std::max(0.0, edgeWidth) * scale_, Packed(edge));
        baseline += own.LineHeight();
    }
}

void CanvasSurface::SetClip(const PixelRect& clip) {
    web_surface_clip(number_, clip.x, clip.y, std::max(clip.width, 0), std::max(clip.height, 0));
}

void CanvasSurface::ResetClip() {
    web_surface_unclip(number_);
}

void CanvasSurface::Compose(const Surface& source, int x, int y, Blend blend) {
    web_surface_compose(number_, static_cast<const CanvasSurface&>(source).number_, x, y,
                        blend == Blend::kReplace ? 1 : 0);
}

Image CanvasSurface::Read(const PixelRect& area) const {
    static_assert(sizeof(Rgba) == 4, "the page writes four bytes a pixel");
    if (area.IsEmpty()) return {};
    Image image{{area.width, area.height}, std::vector<Rgba>(static_cast<std::size_t>(area.Area()))};
    web_surface_read(number_, area.x, area.y, area.width, area.height, image.pixels.data());
    return image;
}

double CanvasSurface::Snapped(double coordinate) const {
    return std::floor(coordinate * scale_ + 0.5);
}

}  // namespace host
