#include "runtime/screen/controls/ButtonNode.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "runtime/screen/controls/BoxDrawing.h"
#include "runtime/screen/controls/Contrast.h"

namespace host {

namespace {

// What the W3C's guideline 1.4.3 asks of large texts; with less, a text gets an edge.
constexpr double kReadableContrast = 3;

}  // namespace

void ButtonNode::SetLook(const BoxLook& look, Rgba pressedColor) {
    look_ = look;
    pressedColor_ = pressedColor;
    LookChanged();
}

void ButtonNode::SetTextLook(const TextLook& look, Rgba pressedColor) {
    text_.SetLook(look);
    textColor_ = look.color;
    pressedTextColor_ = pressedColor;
    LookChanged();
}

void ButtonNode::SetColor(State state, Rgba color) {
    if (state == State::kPressed) {
        pressedColor_ = color;
    } else {
        look_.background = color;
        look_.gradientBottom.reset();
    }
    LookChanged();
}

void ButtonNode::SetTextColor(Rgba color) {
    textColor_ = pressedTextColor_ = color;
    LookChanged();
}

void ButtonNode::SetText(const std::string& text) {
    text_.SetText(text);
    LookChanged();
}

void ButtonNode::SetPicture(State state, std::shared_ptr<const Picture> picture) {
    (state == State::kPressed ? pressedPicture_ : picture_) = std::move(picture);
    LookChanged();
}

void ButtonNode::DescribeLook(DrawList& list, const LookContext& context) {
    BoxLook look = look_;
    if (IsPressed()) {
        look.background = pressedColor_;
        look.gradientBottom.reset();
    }
    AddBox(list, look);
    AddPicture(list, WholeOf(list), IsPressed() && pressedPicture_ ? pressedPicture_ : picture_);

    const Rgba textColor = IsPressed() ? pressedTextColor_ : textColor_;
    std::optional<Rgba> edge;
    if (look.background.alpha != 0) {
        double contrast = ContrastRatio(textColor, look.background);
        if (look.gradientBottom) contrast = std::min(contrast, ContrastRatio(textColor, *look.gradientBottom));
        if (contrast < kReadableContrast) edge = BlackOrWhiteAgainst(look.background);
    }
    text_.Describe(context, TextAreaOf(list, look), textColor, edge, list);
}

}  // namespace host
