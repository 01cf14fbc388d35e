#include "Tizen/Graphics/Canvas.h"

#include <utility>

#include "Tizen/Graphics/Bitmap.h"
#include "Tizen/Ui/HostColor.h"
#include "runtime/screen/Node.h"

namespace Tizen {
namespace Graphics {

namespace {

host::RectF ToHost(const Rectangle& rect) {
    return {static_cast<double>(rect.x), static_cast<double>(rect.y), static_cast<double>(rect.width),
            static_cast<double>(rect.height)};
}

host::SizeF ToHost(const Dimension& size) {
    return {static_cast<double>(size.width), static_cast<double>(size.height)};
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

result Canvas::FillRectangle(const Color& color, const Rectangle& rect) {
    return Draw(rect, host::FilledRectangle{ToHost(rect), Tizen::Ui::ToHost(color)});
}

result Canvas::FillEllipse(const Color& color, const Rectangle& rect) {
    return Draw(rect, host::FilledEllipse{ToHost(rect), Tizen::Ui::ToHost(color)});
}

result Canvas::FillRoundRectangle(const Color& color, const Rectangle& rect, const Dimension& arcDimension) {
    if (IsNegative(arcDimension)) return E_INVALID_ARG;
    return Draw(rect, host::FilledRoundRectangle{ToHost(rect), ToHost(arcDimension), Tizen::Ui::ToHost(color)});
}

result Canvas::DrawRoundRectangle(const Rectangle& rect, const Dimension& arcDimension) {
    if (IsNegative(arcDimension)) return E_INVALID_ARG;
    return Draw(rect, host::StrokedRoundRectangle{ToHost(rect), ToHost(arcDimension), static_cast<double>(lineWidth_),
                                                  Tizen::Ui::ToHost(foregroundColor_)});
}

result Canvas::DrawBitmap(const Rectangle& rect, const Bitmap& bitmap) {
    if (!bitmap.GetPicture()) return E_INVALID_ARG;
    return Draw(rect, host::DrawnPicture{ToHost(rect), bitmap.GetPicture()});
}

template <typename Operation>
result Canvas::Draw(const Rectangle& rect, Operation operation) {
    if (rect.width <= 0 || rect.height <= 0) return E_INVALID_ARG;
    const auto pNode = pNode_.lock();
    if (!pNode) return E_INVALID_STATE;
    pNode->Draw(std::move(operation));
    return E_SUCCESS;
}

}  // namespace Graphics
}  // namespace Tizen
