#include "runtime/screen/controls/BoxNode.h"

#include <utility>

#include "runtime/screen/controls/BoxDrawing.h"

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

void BoxNode::SetPicture(PictureSource picture) {
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

void BoxNode::DescribeLook(DrawList& list, const LookContext& context) {
    AddBox(list, look_);
    AddPicture(list, WholeOf(list), picture_.Get());
    text_.Describe(context, TextAreaOf(list, look_), text_.Look().color, std::nullopt, list);
}

void BoxNode::DescribeInWords(std::vector<AccessiblePart>& parts) const {
    AccessiblePart part;
    part.role = GetTextRank() == TextRank::kHeading ? AccessibleRole::kHeading : AccessibleRole::kText;
    part.name = SpokenName(Text());
    part.bounds = {0, 0, Bounds().width, Bounds().height};
    parts.push_back(std::move(part));
}

}  // namespace host
