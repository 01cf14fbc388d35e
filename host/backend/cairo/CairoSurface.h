#pragma once

#include "backend/Painter.h"
#include "backend/cairo/CairoHandles.h"

namespace host {

/// An image in memory, premultiplied ARGB or opaque RGB, with one drawing context for its whole life. UI thread only.
class CairoSurface final : public Surface {
public:
    /// Takes over an image surface. Drawing on one that has an error does nothing.
    CairoSurface(CairoSurfaceHandle image, double scale);

    [[nodiscard]] PixelSize Size() const override;
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

    [[nodiscard]] cairo_surface_t* Target() const { return image_.get(); }

private:
    class DeviceUnits;

    /// The context must not keep what it has drawn alive, nor its pixels when they are somebody else's.
    void ForgetSource();
    void Fill(Rgba color);
    void Stroke(double lineWidth, Rgba color);
    void AddEllipse(const RectF& rect);
    void AddRoundRectangle(const RectF& rect, double arcWidth, double arcHeight);
    /// The nearest whole device pixel to a coordinate in the surface's units.
    [[nodiscard]] double Snapped(double coordinate) const;

    CairoSurfaceHandle image_;
    CairoContextHandle context_;
    double scale_;
};

}  // namespace host
