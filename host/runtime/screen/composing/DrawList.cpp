#include "runtime/screen/composing/DrawList.h"

#include <cmath>
#include <utility>

namespace host {

namespace {

constexpr std::uint8_t kOpaque = 255;

// The device pixels that lie wholly inside of `rect`; edges that reach to the control's edge reach to the surface's.
PixelRect PixelsInside(const RectF& rect, SizeF controlSize, PixelSize surfaceSize, double scale) {
    const int left = rect.x <= 0 ? 0 : static_cast<int>(std::ceil(rect.x * scale));
    const int top = rect.y <= 0 ? 0 : static_cast<int>(std::ceil(rect.y * scale));
    const int right = rect.x + rect.width >= controlSize.width
                          ? surfaceSize.width
                          : static_cast<int>(std::floor((rect.x + rect.width) * scale));
    const int bottom = rect.y + rect.height >= controlSize.height
                           ? surfaceSize.height
                           : static_cast<int>(std::floor((rect.y + rect.height) * scale));
    return PixelRect{left, top, right - left, bottom - top}.Intersection({0, 0, surfaceSize.width, surfaceSize.height});
}

/// Paints one operation on a surface, moved by (x, y) and scaled from there.
class OperationPainter {
public:
    OperationPainter(Surface& surface, double x, double y, double scale)
        : surface_(surface), x_(x), y_(y), scale_(scale) {}

    void operator()(const FilledRectangle& filled) const { surface_.FillRectangle(Placed(filled.rect), filled.color); }
    void operator()(const StrokedRectangle& stroked) const {
        surface_.StrokeRectangle(Placed(stroked.rect), stroked.lineWidth * scale_, stroked.color);
    }
    void operator()(const FilledEllipse& filled) const { surface_.FillEllipse(Placed(filled.rect), filled.color); }
    void operator()(const StrokedEllipse& stroked) const {
        surface_.StrokeEllipse(Placed(stroked.rect), stroked.lineWidth * scale_, stroked.color);
    }
    void operator()(const FilledRoundRectangle& filled) const {
        surface_.FillRoundRectangle(Placed(filled.rect), filled.arc.width * scale_, filled.arc.height * scale_,
                                    filled.color);
    }
    void operator()(const StrokedRoundRectangle& stroked) const {
        surface_.StrokeRoundRectangle(Placed(stroked.rect), stroked.arc.width * scale_, stroked.arc.height * scale_,
                                      stroked.lineWidth * scale_, stroked.color);
    }
    void operator()(const FilledGradient& gradient) const {
        surface_.FillGradient(Placed(gradient.rect), gradient.arc.width * scale_, gradient.arc.height * scale_,
                              gradient.top, gradient.bottom);
    }
    void operator()(const DrawnPicture& drawn) const { surface_.DrawPicture(Placed(drawn.rect), *drawn.picture); }
    void operator()(const DrawnText& drawn) const {
        const PointF topLeft{x_ + drawn.topLeft.x * scale_, y_ + drawn.topLeft.y * scale_};
        if (drawn.edge) {
            surface_.DrawTextWithEdge(*drawn.text, topLeft, drawn.color, drawn.edge->width * scale_, drawn.edge->color);
        } else {
            surface_.DrawText(*drawn.text, topLeft, drawn.color);
        }
    }
    void operator()(const EarlierDrawing& earlier) const {
        surface_.Compose(*earlier.surface, 0, 0, Surface::Blend::kReplace);
    }

private:
    [[nodiscard]] RectF Placed(const RectF& rect) const {
        return {x_ + rect.x * scale_, y_ + rect.y * scale_, rect.width * scale_, rect.height * scale_};
    }

    Surface& surface_;
    double x_;
    double y_;
    double scale_;
};

// The band between the upper and the lower corners.
RectF BandOf(const RectF& rect, SizeF arc) {
    return {rect.x, rect.y + arc.height / 2, rect.width, rect.height - arc.height};
}

// The part of an opaque filling that surely hides what is under it; empty for other operations.
RectF HiddenBy(const DrawOperation& operation) {
    if (const auto* filled = std::get_if<FilledRectangle>(&operation)) {
        if (filled->color.alpha == kOpaque) return filled->rect;
    } else if (const auto* round = std::get_if<FilledRoundRectangle>(&operation)) {
        if (round->color.alpha == kOpaque) return BandOf(round->rect, round->arc);
    } else if (const auto* gradient = std::get_if<FilledGradient>(&operation)) {
        const bool isOpaque = gradient->top.alpha == kOpaque && gradient->bottom.alpha == kOpaque;
        if (isOpaque) return BandOf(gradient->rect, gradient->arc);
    }
    return {};
}

}  // namespace

void DrawList::Add(DrawOperation operation) {
    if (CoveringColor(operation) != nullptr) {
        operations_.clear();
        hasText_ = false;
    }
    hasText_ = hasText_ || std::holds_alternative<DrawnText>(operation);
    operations_.push_back(std::move(operation));
}

void DrawList::ReplaceBy(std::shared_ptr<const Surface> painted) {
    operations_.clear();
    hasText_ = false;
    operations_.emplace_back(EarlierDrawing{std::move(painted)});
}

std::optional<Rgba> DrawList::PlainColor() const {
    if (operations_.size() != 1) return std::nullopt;
    const auto* only = std::get_if<FilledRectangle>(&operations_.front());
    if (only == nullptr || !Covers(only->rect)) return std::nullopt;
    return only->color;
}

PixelRect DrawList::OpaquePart(PixelSize surfaceSize, double scale) const {
    PixelRect largest;
    for (const DrawOperation& operation : operations_) {
        const PixelRect hidden = PixelsInside(HiddenBy(operation), size_, surfaceSize, scale);
        if (hidden.Area() > largest.Area()) largest = hidden;
    }
    return largest;
}

void DrawList::Paint(Surface& surface) const {
    if (operations_.empty() || CoveringColor(operations_.front()) == nullptr) surface.Clear({});
    const OperationPainter painter(surface, 0, 0, 1);
    for (const DrawOperation& operation : operations_) {
        // A surface may end within a control's last pixel, which must not stay half painted at the edge.
        if (const Rgba* color = CoveringColor(operation)) {
            surface.Clear(*color);
        } else {
            std::visit(painter, operation);
        }
    }
}

bool DrawList::CanPaintOver(double scale) const {
    if (!operations_.empty() && std::holds_alternative<EarlierDrawing>(operations_.front())) return false;
    return scale == 1 || !hasText_;
}

void DrawList::PaintOver(Surface& surface, const PixelRect& place, double scale) const {
    const OperationPainter painter(surface, place.x, place.y, scale);
    for (const DrawOperation& operation : operations_) {
        if (const Rgba* color = CoveringColor(operation)) {
            surface.Clear(*color);
        } else {
            std::visit(painter, operation);
        }
    }
}

bool DrawList::Covers(const RectF& rect) const {
    return rect.x <= 0 && rect.y <= 0 && rect.x + rect.width >= size_.width && rect.y + rect.height >= size_.height;
}

const Rgba* DrawList::CoveringColor(const DrawOperation& operation) const {
    const auto* filled = std::get_if<FilledRectangle>(&operation);
    const bool isCovering = filled != nullptr && filled->color.alpha == kOpaque && Covers(filled->rect);
    return isCovering ? &filled->color : nullptr;
}

}  // namespace host
