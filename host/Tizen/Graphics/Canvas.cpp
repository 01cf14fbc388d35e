#include "Tizen/Graphics/Canvas.h"

#include <utility>

#include "Tizen/Graphics/Bitmap.h"
#include "Tizen/Ui/HostColor.h"
#include "runtime/screen/Node.h"

namespace Tizen {
namespace Graphics {

using host::DrawOperation;
using Kind = host::DrawOperation::Kind;

namespace {

DrawOperation Operation(Kind kind, const Rectangle& rect, const Color& color) {
    DrawOperation operation;
    operation.kind = kind;
    operation.rect = {static_cast<double>(rect.x), static_cast<double>(rect.y), static_cast<double>(rect.width),
                      static_cast<double>(rect.height)};
    operation.color = Tizen::Ui::ToHost(color);
    return operation;
}

bool IsNegative(const Dimension& size) {
    return size.width < 0 || size.height < 0;
}

}  // namespace

Canvas::Canvas(std::weak_ptr<host::Node> pNode) : pNode_(std::move(pNode)) {}

Canvas::~Canvas() = default;

Rectangle Canvas::GetBounds() const {
    const auto pNode = pNode_.lock();
    if (!pNode) return Rectangle();
    return Rectangle(0, 0, pNode->Bounds().width, pNode->Bounds().height);
}

result Canvas::SetForegroundColor(const Color& color) {
    foregroundColor_ = color;
    return E_SUCCESS;
}

result Canvas::SetLineWidth(int width) {
    if (width < 1) return E_INVALID_ARG;
    lineWidth_ = width;
    return E_SUCCESS;
}

result Canvas::Clear() {
    return Draw(DrawOperation());
}

result Canvas::FillRectangle(const Color& color, const Rectangle& rect) {
    return Draw(Operation(Kind::kFillRectangle, rect, color));
}

result Canvas::FillEllipse(const Color& color, const Rectangle& rect) {
    return Draw(Operation(Kind::kFillEllipse, rect, color));
}

result Canvas::FillRoundRectangle(const Color& color, const Rectangle& rect, const Dimension& arcDimension) {
    if (IsNegative(arcDimension)) return E_INVALID_ARG;
    DrawOperation operation = Operation(Kind::kFillRoundRectangle, rect, color);
    operation.arcWidth = arcDimension.width;
    operation.arcHeight = arcDimension.height;
    return Draw(std::move(operation));
}

result Canvas::DrawRectangle(const Rectangle& rect) {
    DrawOperation operation = Operation(Kind::kStrokeRectangle, rect, foregroundColor_);
    operation.lineWidth = lineWidth_;
    return Draw(std::move(operation));
}

result Canvas::DrawEllipse(const Rectangle& rect) {
    DrawOperation operation = Operation(Kind::kStrokeEllipse, rect, foregroundColor_);
    operation.lineWidth = lineWidth_;
    return Draw(std::move(operation));
}

result Canvas::DrawRoundRectangle(const Rectangle& rect, const Dimension& arcDimension) {
    if (IsNegative(arcDimension)) return E_INVALID_ARG;
    DrawOperation operation = Operation(Kind::kStrokeRoundRectangle, rect, foregroundColor_);
    operation.arcWidth = arcDimension.width;
    operation.arcHeight = arcDimension.height;
    operation.lineWidth = lineWidth_;
    return Draw(std::move(operation));
}

result Canvas::DrawLine(const Point& from, const Point& to) {
    DrawOperation operation =
        Operation(Kind::kLine, Rectangle(from.x, from.y, to.x - from.x, to.y - from.y), foregroundColor_);
    operation.lineWidth = lineWidth_;
    // A line's rectangle runs from its start to its end, so its sides may be negative.
    return DrawAnyway(std::move(operation));
}

result Canvas::DrawBitmap(const Rectangle& rect, const Bitmap& bitmap) {
    if (!bitmap.GetPicture()) return E_INVALID_ARG;
    DrawOperation operation = Operation(Kind::kPicture, rect, Color());
    operation.picture = bitmap.GetPicture();
    return Draw(std::move(operation));
}

result Canvas::Draw(host::DrawOperation operation) {
    const bool isEmpty = operation.rect.width <= 0 || operation.rect.height <= 0;
    if (isEmpty && operation.kind != Kind::kClear) return E_INVALID_ARG;
    return DrawAnyway(std::move(operation));
}

result Canvas::DrawAnyway(host::DrawOperation operation) {
    const auto pNode = pNode_.lock();
    if (!pNode) return E_INVALID_STATE;
    pNode->Draw(std::move(operation));
    return E_SUCCESS;
}

}  // namespace Graphics
}  // namespace Tizen
