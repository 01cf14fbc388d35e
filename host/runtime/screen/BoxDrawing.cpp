#include "runtime/screen/BoxDrawing.h"

#include <algorithm>
#include <utility>

namespace host {

namespace {

// No radius is longer than half of the shorter side.
double Arc(const RectF& rect, double radius) {
    return 2 * std::max(0.0, std::min(radius, std::min(rect.width, rect.height) / 2));
}

}  // namespace

void AddFilling(DrawList& list, const RectF& rect, double radius, Rgba color) {
    if (color.alpha == 0 || rect.width <= 0 || rect.height <= 0) return;
    DrawOperation operation;
    operation.kind = radius > 0 ? DrawOperation::Kind::kFillRoundRectangle : DrawOperation::Kind::kFillRectangle;
    operation.rect = rect;
    operation.arcWidth = operation.arcHeight = Arc(rect, radius);
    operation.color = color;
    list.Add(std::move(operation));
}

void AddOutline(DrawList& list, const RectF& rect, double radius, double width, Rgba color) {
    if (color.alpha == 0 || width <= 0 || rect.width <= width || rect.height <= width) return;
    DrawOperation operation;
    operation.kind = radius > 0 ? DrawOperation::Kind::kStrokeRoundRectangle : DrawOperation::Kind::kStrokeRectangle;
    operation.rect = {rect.x + width / 2, rect.y + width / 2, rect.width - width, rect.height - width};
    operation.arcWidth = operation.arcHeight = Arc(operation.rect, radius - width / 2);
    operation.lineWidth = width;
    operation.color = color;
    list.Add(std::move(operation));
}

void AddBox(DrawList& list, const BoxLook& look) {
    const RectF whole{0, 0, list.Size().width, list.Size().height};
    if (look.gradientBottom) {
        DrawOperation operation;
        operation.kind = DrawOperation::Kind::kFillGradient;
        operation.rect = whole;
        operation.arcWidth = operation.arcHeight = Arc(whole, look.corner);
        operation.color = look.background;
        operation.secondColor = *look.gradientBottom;
        list.Add(std::move(operation));
    } else {
        AddFilling(list, whole, look.corner, look.background);
    }
    AddOutline(list, whole, look.corner, look.borderWidth, look.border);
}

void AddPicture(DrawList& list, const RectF& rect, const std::shared_ptr<const Picture>& picture) {
    if (!picture || rect.width <= 0 || rect.height <= 0) return;
    DrawOperation operation;
    operation.kind = DrawOperation::Kind::kPicture;
    operation.rect = rect;
    operation.picture = picture;
    list.Add(std::move(operation));
}

}  // namespace host
