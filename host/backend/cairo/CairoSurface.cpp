#include "backend/cairo/CairoSurface.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "backend/cairo/CairoPicture.h"
#include "backend/cairo/CairoPixel.h"
#include "backend/cairo/PangoText.h"

namespace host {

namespace {

constexpr double kFullChannel = 255.0;
constexpr double kFullTurn = 6.283185307179586;  // radians
// How far a cubic's handles reach along the tangent, as a part of the radius, to draw a quarter of a circle: its middle
// then lies on the circle, 4/3 (sqrt(2) - 1), and nothing is off by more than 0.03 %.
constexpr double kQuarterHandle = 0.5522847498307936;

// The surfaces, pictures and texts that arrive over the seam were made by the same painter.
const CairoSurface& Own(const Surface& surface) {
    return static_cast<const CairoSurface&>(surface);
}

void SetColor(cairo_t* context, Rgba color) {
    cairo_set_source_rgba(context, color.red / kFullChannel, color.green / kFullChannel, color.blue / kFullChannel,
                          color.alpha / kFullChannel);
}

bool IsEmpty(const RectF& rect) {
    return !(rect.width > 0 && rect.height > 0);
}

}  // namespace

/// While it lives, the context's units are device pixels.
class CairoSurface::DeviceUnits {
public:
    explicit DeviceUnits(const CairoSurface& surface) : context_(surface.context_.get()), scale_(surface.scale_) {
        cairo_identity_matrix(context_);
    }
    ~DeviceUnits() {
        cairo_identity_matrix(context_);
        cairo_scale(context_, scale_, scale_);
    }
    DeviceUnits(const DeviceUnits&) = delete;
    DeviceUnits& operator=(const DeviceUnits&) = delete;

private:
    cairo_t* context_;
    double scale_;
};

CairoSurface::CairoSurface(CairoSurfaceHandle image, double scale)
    : image_(std::move(image)), context_(cairo_create(image_.get())), scale_(scale > 0 ? scale : 1) {
    cairo_scale(context_.get(), scale_, scale_);
}

PixelSize CairoSurface::Size() const {
    return {cairo_image_surface_get_width(image_.get()), cairo_image_surface_get_height(image_.get())};
}

void CairoSurface::Clear(Rgba color) {
    SetColor(context_.get(), color);
    cairo_set_operator(context_.get(), CAIRO_OPERATOR_SOURCE);
    cairo_paint(context_.get());
    cairo_set_operator(context_.get(), CAIRO_OPERATOR_OVER);
}

void CairoSurface::FillRectangle(const RectF& rect, Rgba color) {
    if (IsEmpty(rect)) return;
    cairo_rectangle(context_.get(), rect.x, rect.y, rect.width, rect.height);
    Fill(color);
}

void CairoSurface::StrokeRectangle(const RectF& rect, double lineWidth, Rgba color) {
    if (IsEmpty(rect)) return;
    cairo_rectangle(context_.get(), rect.x, rect.y, rect.width, rect.height);
    Stroke(lineWidth, color);
}

void CairoSurface::FillEllipse(const RectF& rect, Rgba color) {
    if (IsEmpty(rect)) return;
    AddEllipse(rect);
    Fill(color);
}

void CairoSurface::StrokeEllipse(const RectF& rect, double lineWidth, Rgba color) {
    if (IsEmpty(rect)) return;
    AddEllipse(rect);
    Stroke(lineWidth, color);
}

void CairoSurface::FillRoundRectangle(const RectF& rect, double arcWidth, double arcHeight, Rgba color) {
    if (IsEmpty(rect)) return;
    AddRoundRectangle(rect, arcWidth, arcHeight);
    Fill(color);
}

void CairoSurface::StrokeRoundRectangle(const RectF& rect, double arcWidth, double arcHeight, double lineWidth,
                                        Rgba color) {
    if (IsEmpty(rect)) return;
    AddRoundRectangle(rect, arcWidth, arcHeight);
    Stroke(lineWidth, color);
}

void CairoSurface::FillGradient(const RectF& rect, double arcWidth, double arcHeight, Rgba top, Rgba bottom) {
    if (IsEmpty(rect)) return;
    const CairoPatternHandle gradient(cairo_pattern_create_linear(0, rect.y, 0, rect.y + rect.height));
    const auto addStop = [&](double offset, Rgba color) {
        cairo_pattern_add_color_stop_rgba(gradient.get(), offset, color.red / kFullChannel, color.green / kFullChannel,
                                          color.blue / kFullChannel, color.alpha / kFullChannel);
    };
    addStop(0, top);
    addStop(1, bottom);
    AddRoundRectangle(rect, arcWidth, arcHeight);
    cairo_set_source(context_.get(), gradient.get());
    cairo_fill(context_.get());
    ForgetSource();
}

void CairoSurface::DrawPicture(const RectF& rect, const Picture& picture) {
    if (IsEmpty(rect)) return;
    const auto& own = static_cast<const CairoPicture&>(picture);
    // Whole device pixels: the scaled copy is then put down without another filter.
    const double left = Snapped(rect.x);
    const double top = Snapped(rect.y);
    const double width = std::max(1.0, Snapped(rect.x + rect.width) - left);
    const double height = std::max(1.0, Snapped(rect.y + rect.height) - top);
    if (width > INT16_MAX || height > INT16_MAX) return;  // Further than Cairo's images reach.

    const DeviceUnits units(*this);
    cairo_t* const context = context_.get();
    cairo_surface_t* const scaled = own.ScaledTo({static_cast<int>(width), static_cast<int>(height)});
    if (scaled != nullptr) {
        cairo_set_source_surface(context, scaled, left, top);
        cairo_pattern_set_filter(cairo_get_source(context), CAIRO_FILTER_NEAREST);
    } else {
        cairo_set_source_surface(context, own.Original(), 0, 0);
        cairo_matrix_t toPicture;
        cairo_matrix_init_scale(&toPicture, own.Size().width / width, own.Size().height / height);
        cairo_matrix_translate(&toPicture, -left, -top);
        cairo_pattern_set_matrix(cairo_get_source(context), &toPicture);
        cairo_pattern_set_extend(cairo_get_source(context), CAIRO_EXTEND_PAD);
    }
    cairo_rectangle(context, left, top, width, height);
    cairo_fill(context);
    ForgetSource();
}

void CairoSurface::DrawText(const TextLayout& text, PointF topLeft, Rgba color) {
    const double left = Snapped(topLeft.x);
    const double top = Snapped(topLeft.y);
    const DeviceUnits units(*this);
    SetColor(context_.get(), color);
    static_cast<const PangoText&>(text).Show(context_.get(), left, top);
}

void CairoSurface::DrawTextWithEdge(const TextLayout& text, PointF topLeft, Rgba color, double edgeWidth, Rgba edge) {
    if (edgeWidth > 0) {
        const double left = Snapped(topLeft.x);
        const double top = Snapped(topLeft.y);
        const DeviceUnits units(*this);
        SetColor(context_.get(), edge);
        static_cast<const PangoText&>(text).ShowEdge(context_.get(), left, top, edgeWidth * scale_);
    }
    DrawText(text, topLeft, color);
}

void CairoSurface::SetClip(const PixelRect& clip) {
    const DeviceUnits units(*this);
    cairo_reset_clip(context_.get());
    cairo_rectangle(context_.get(), clip.x, clip.y, std::max(clip.width, 0), std::max(clip.height, 0));
    cairo_clip(context_.get());
}

void CairoSurface::ResetClip() {
    cairo_reset_clip(context_.get());
}

void CairoSurface::Compose(const Surface& source, int x, int y, Blend blend) {
    const DeviceUnits units(*this);
    cairo_t* const context = context_.get();
    const PixelSize size = source.Size();
    cairo_set_source_surface(context, Own(source).Target(), x, y);
    cairo_pattern_set_filter(cairo_get_source(context), CAIRO_FILTER_NEAREST);
    // A rectangle of the source's size, since painting without one would replace what lies beside the source too.
    cairo_rectangle(context, x, y, size.width, size.height);
    if (blend == Blend::kReplace) cairo_set_operator(context, CAIRO_OPERATOR_SOURCE);
    cairo_fill(context);
    cairo_set_operator(context, CAIRO_OPERATOR_OVER);
    ForgetSource();
}

Image CairoSurface::Read(const PixelRect& area) const {
    if (area.IsEmpty()) return {};
    Image image{{area.width, area.height}, std::vector<Rgba>(static_cast<std::size_t>(area.Area()))};
    const PixelRows rows = RowsOf(image_.get());
    const PixelRect inside = area.Intersection({0, 0, rows.size.width, rows.size.height});
    const bool isOpaque = cairo_image_surface_get_format(image_.get()) == CAIRO_FORMAT_RGB24;
    for (int y = inside.y; y < inside.y + inside.height; ++y) {
        const unsigned char* source =
            rows.data + static_cast<std::size_t>(y) * rows.stride + static_cast<std::size_t>(inside.x) * kPixelBytes;
        Rgba* target = image.pixels.data() + std::ptrdiff_t{y - area.y} * area.width + (inside.x - area.x);
        for (int x = 0; x < inside.width; ++x, source += kPixelBytes) {
            const std::uint32_t pixel = LoadPixel(source);
            *target++ = isOpaque ? UnpackedPixel(pixel | kOpaqueAlpha << 24) : StraightColor(pixel);
        }
    }
    return image;
}

void CairoSurface::ForgetSource() {
    cairo_set_source_rgb(context_.get(), 0, 0, 0);
}

void CairoSurface::Fill(Rgba color) {
    // Blending nothing takes Cairo as long as blending something.
    if (color.alpha == 0) {
        cairo_new_path(context_.get());
        return;
    }
    SetColor(context_.get(), color);
    cairo_fill(context_.get());
}

void CairoSurface::Stroke(double lineWidth, Rgba color) {
    if (lineWidth > 0) {
        SetColor(context_.get(), color);
        cairo_set_line_width(context_.get(), lineWidth);
        cairo_stroke(context_.get());
    } else {
        cairo_new_path(context_.get());
    }
}

void CairoSurface::AddEllipse(const RectF& rect) {
    cairo_t* const context = context_.get();
    cairo_matrix_t before;
    cairo_get_matrix(context, &before);
    cairo_translate(context, rect.x + rect.width / 2, rect.y + rect.height / 2);
    cairo_scale(context, rect.width / 2, rect.height / 2);
    cairo_new_sub_path(context);
    cairo_arc(context, 0, 0, 1, 0, kFullTurn);
    cairo_close_path(context);
    // Without the ellipse's matrix, so that a stroke is equally wide all around.
    cairo_set_matrix(context, &before);
}

void CairoSurface::AddRoundRectangle(const RectF& rect, double arcWidth, double arcHeight) {
    cairo_t* const context = context_.get();
    const double radiusX = std::min(arcWidth, rect.width) / 2;
    const double radiusY = std::min(arcHeight, rect.height) / 2;
    if (!(radiusX > 0 && radiusY > 0)) {
        cairo_rectangle(context, rect.x, rect.y, rect.width, rect.height);
        return;
    }
    const double left = rect.x;
    const double top = rect.y;
    const double right = rect.x + rect.width;
    const double bottom = rect.y + rect.height;
    // From the end of a handle to the corner that its curve cuts.
    const double restX = radiusX * (1 - kQuarterHandle);
    const double restY = radiusY * (1 - kQuarterHandle);
    cairo_move_to(context, left + radiusX, top);
    cairo_line_to(context, right - radiusX, top);
    cairo_curve_to(context, right - restX, top, right, top + restY, right, top + radiusY);
    cairo_line_to(context, right, bottom - radiusY);
    cairo_curve_to(context, right, bottom - restY, right - restX, bottom, right - radiusX, bottom);
    cairo_line_to(context, left + radiusX, bottom);
    cairo_curve_to(context, left + restX, bottom, left, bottom - restY, left, bottom - radiusY);
    cairo_line_to(context, left, top + radiusY);
    cairo_curve_to(context, left, top + restY, left + restX, top, left + radiusX, top);
    cairo_close_path(context);
}

double CairoSurface::Snapped(double coordinate) const {
    return std::floor(coordinate * scale_ + 0.5);
}

}  // namespace host
