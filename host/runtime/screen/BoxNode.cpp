#include "runtime/screen/BoxNode.h"

#include <utility>

#include "runtime/screen/BoxDrawing.h"
#include "runtime/screen/Screen.h"

namespace host {

void BoxNode::SetLook(const BoxLook& look) {
    look_ = look;
    LookChanged();
}

void BoxNode::SetBackground(Rgba color) {
    look_.background = color;
    look_.gradientBottom.reset();
    LookChanged();
}

void BoxNode::SetPicture(std::shared_ptr<const Picture> picture) {
    picture_ = std::move(picture);
    LookChanged();
}

void BoxNode::SetTextLook(const TextLook& look) {
    text_.SetLook(look);
    LookChanged();
}

void BoxNode::SetText(const std::string& text) {
    text_.SetText(text);
    LookChanged();
}

void BoxNode::DescribeLook(DrawList& list) {
    const RectF whole{0, 0, list.Size().width, list.Size().height};
    AddBox(list, look_);
    AddPicture(list, whole, picture_);
    // A text keeps clear of the border and the rounded corners beside it.
    const double inset = look_.borderWidth + look_.corner / 2;
    const RectF inside{inset, look_.borderWidth, whole.width - 2 * inset, whole.height - 2 * look_.borderWidth};
    text_.Describe(GetScreen().GetPainter(), GetScreen().GetScale(), inside, text_.Look().color, std::nullopt, list);
}

}  // namespace host
