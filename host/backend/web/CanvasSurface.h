#pragma once

#include "backend/Painter.h"

namespace host {

/// A canvas of the browser. Drawing takes place in the surface's units; the page is told device pixels. UI thread only.
class CanvasSurface final : public Surface {
public:
    /// `number` is the page's name for it: 0 is the page's own canvas, which stays when this goes.
    CanvasSurface(int number, PixelSize size, double scale);
    ~CanvasSurface() override;
    CanvasSurface(const CanvasSurface&) = delete;
    CanvasSurface& operator=(const CanvasSurface&) = delete;

    [[nodiscard]] PixelSize Size() const override { return size_; }
    [[nodiscard]] double Scale() const override { return scale_; }

    void Clear(Rgba color) override;
    void FillRectangle(const RectF& rect, Rgba color) override;
    void StrokeRectangle(const RectF& rect, double lineWidth, Rgba color) override;
    void FillEllipse(const RectF& rect, Rgba color) override;
    void StrokeEllipse(const RectF& rect, double lineWidth, Rgba color) override;
    void FillRoundRectangle(const RectF& rect, double arcWidth, double arcHeight, Rgba color) override;
    void StrokeRoundRectangle(const RectF& rect, double arcWidth, double arcHeight, double lineWidth,
                              Rgba color) override;
    void FillGradient(const RectF& rect, double arcWidth, double arcHeight, Rgba top, Rgba bottom) override;
    void DrawPicture(const RectF& rect, const Picture& picture) override;
    void DrawText(const TextLayout& text, PointF topLeft, Rgba color) override;
    void DrawTextWithEdge(const TextLayout& text, PointF topLeft, Rgba color, double edgeWidth, Rgba edge) override;
    void SetClip(const PixelRect& clip) override;
    void ResetClip() override;
    void Compose(const Surface& source, int x, int y, Blend blend) override;
    [[nodiscard]] Image Read(const PixelRect& area) const override;

private:
    enum class Shape { kRectangle, kEllipse, kRoundRectangle };

    void Draw(Shape shape, const RectF& rect, double arcWidth, double arcHeight, double lineWidth, Rgba color);
    [[nodiscard]] double Snapped(double coordinate) const;

    int number_;
    PixelSize size_;
    double scale_;
};

}  // namespace host
