#include "runtime/screen/DrawList.h"

#include <cmath>
#include <utility>

namespace host {

namespace {

constexpr std::uint8_t kOpaque = 255;

bool AreEqual(const RectF& left, const RectF& right) {
    return left.x == right.x && left.y == right.y && left.width == right.width && left.height == right.height;
}

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

DrawOperation Moved(const DrawOperation& operation, const PixelRect& place, double scale) {
    DrawOperation moved = operation;
    moved.rect = {place.x + operation.rect.x * scale, place.y + operation.rect.y * scale, operation.rect.width * scale,
                  operation.rect.height * scale};
    moved.arcWidth *= scale;
    moved.arcHeight *= scale;
    moved.lineWidth *= scale;
    return moved;
}

void PaintOperation(const DrawOperation& operation, Surface& surface) {
    using Kind = DrawOperation::Kind;
    const RectF& rect = operation.rect;
    switch (operation.kind) {
        case Kind::kClear:
            surface.Clear({});
            break;
        case Kind::kFillRectangle:
            surface.FillRectangle(rect, operation.color);
            break;
        case Kind::kStrokeRectangle:
            surface.StrokeRectangle(rect, operation.lineWidth, operation.color);
            break;
        case Kind::kFillEllipse:
            surface.FillEllipse(rect, operation.color);
            break;
        case Kind::kStrokeEllipse:
            surface.StrokeEllipse(rect, operation.lineWidth, operation.color);
            break;
        case Kind::kFillRoundRectangle:
            surface.FillRoundRectangle(rect, operation.arcWidth, operation.arcHeight, operation.color);
            break;
        case Kind::kStrokeRoundRectangle:
            surface.StrokeRoundRectangle(rect, operation.arcWidth, operation.arcHeight, operation.lineWidth,
                                         operation.color);
            break;
        case Kind::kFillGradient:
            surface.FillGradient(rect, operation.arcWidth, operation.arcHeight, operation.color, operation.secondColor);
            break;
        case Kind::kLine:
            surface.DrawLine({rect.x, rect.y}, {rect.x + rect.width, rect.y + rect.height}, operation.lineWidth,
                             operation.color);
            break;
        case Kind::kPicture:
            surface.DrawPicture(rect, *operation.picture);
            break;
        case Kind::kText:
            if (operation.lineWidth > 0) {
                surface.DrawTextWithEdge(*operation.text, {rect.x, rect.y}, operation.color, operation.lineWidth,
                                         operation.secondColor);
            } else {
                surface.DrawText(*operation.text, {rect.x, rect.y}, operation.color);
            }
            break;
    }
}

// The part of an opaque filling that surely hides what is under it; empty for other operations.
RectF HiddenBy(const DrawOperation& operation) {
    using Kind = DrawOperation::Kind;
    if (operation.color.alpha != kOpaque) return {};
    RectF rect = operation.rect;
    switch (operation.kind) {
        case Kind::kFillRectangle:
            return rect;
        case Kind::kFillGradient:
            if (operation.secondColor.alpha != kOpaque) return {};
            [[fallthrough]];
        case Kind::kFillRoundRectangle:
            // The band between the upper and the lower corners.
            rect.y += operation.arcHeight / 2;
            rect.height -= operation.arcHeight;
            return rect;
        default:
            return {};
    }
}

}  // namespace

bool operator==(const DrawOperation& left, const DrawOperation& right) {
    return left.kind == right.kind && AreEqual(left.rect, right.rect) && left.arcWidth == right.arcWidth &&
           left.arcHeight == right.arcHeight && left.lineWidth == right.lineWidth && left.color == right.color &&
           left.secondColor == right.secondColor && left.picture == right.picture && left.text == right.text;
}

bool operator==(const DrawList& left, const DrawList& right) {
    return left.size_.width == right.size_.width && left.size_.height == right.size_.height &&
           left.operations_ == right.operations_;
}

void DrawList::Add(DrawOperation operation) {
    if (ReplacesEverything(operation)) {
        operations_.clear();
        hasText_ = false;
    }
    // A list begins with nothing on the surface, so a clear is never needed as its first operation.
    if (operation.kind == DrawOperation::Kind::kClear) return;
    hasText_ = hasText_ || operation.kind == DrawOperation::Kind::kText;
    operations_.push_back(std::move(operation));
}

std::optional<Rgba> DrawList::PlainColor() const {
    if (operations_.size() != 1) return std::nullopt;
    const DrawOperation& only = operations_.front();
    if (only.kind != DrawOperation::Kind::kFillRectangle || !Covers(only.rect)) return std::nullopt;
    return only.color;
}

PixelRect DrawList::OpaquePart(PixelSize surfaceSize, double scale) const {
    PixelRect largest;
    for (const DrawOperation& operation : operations_) {
        const PixelRect hidden = PixelsInside(HiddenBy(operation), size_, surfaceSize, scale);
        const auto area = [](const PixelRect& rect) {
            return rect.IsEmpty() ? 0 : std::int64_t{rect.width} * rect.height;
        };
        if (area(hidden) > area(largest)) largest = hidden;
    }
    return largest;
}

void DrawList::Paint(Surface& surface) const {
    if (operations_.empty() || !ReplacesEverything(operations_.front())) surface.Clear({});
    for (const DrawOperation& operation : operations_) {
        // A surface may end within a control's last pixel, which must not stay half painted at the edge.
        if (ReplacesEverything(operation)) {
            surface.Clear(operation.color);
        } else {
            PaintOperation(operation, surface);
        }
    }
}

void DrawList::PaintOver(Surface& surface, const PixelRect& place, double scale) const {
    for (const DrawOperation& operation : operations_) {
        if (ReplacesEverything(operation)) {
            surface.Clear(operation.color);
        } else {
            PaintOperation(Moved(operation, place, scale), surface);
        }
    }
}

bool DrawList::Covers(const RectF& rect) const {
    return rect.x <= 0 && rect.y <= 0 && rect.x + rect.width >= size_.width && rect.y + rect.height >= size_.height;
}

bool DrawList::ReplacesEverything(const DrawOperation& operation) const {
    using Kind = DrawOperation::Kind;
    if (operation.kind == Kind::kClear) return true;
    return operation.kind == Kind::kFillRectangle && operation.color.alpha == kOpaque && Covers(operation.rect);
}

}  // namespace host
