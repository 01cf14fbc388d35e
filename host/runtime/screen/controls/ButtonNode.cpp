#include "runtime/screen/controls/ButtonNode.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "runtime/screen/controls/BoxDrawing.h"
#include "runtime/screen/controls/Contrast.h"

namespace host {

namespace {

// What the W3C's guideline 1.4.3 asks of large texts; with less, a text gets an edge.
constexpr double kReadableContrast = 3;
constexpr double kNoContrast = 1;
// With less, a plain box is hardly told from what lies around it.
constexpr double kTellableContrast = 1.25;
constexpr double kThinnestEdge = 0.15;  ///< of the widest, as soon as there has to be one
constexpr double kPressedShade = 0.8;

/// How strong an edge a text needs on this contrast, 0..1. A small lack needs little.
double EdgeStrength(double contrast) {
    if (contrast >= kReadableContrast) return 0;
    const double lack = (kReadableContrast - contrast) / (kReadableContrast - kNoContrast);
    return std::lerp(kThinnestEdge, 1.0, lack * lack);
}

}  // namespace

void ButtonNode::SetLook(const BoxLook& look, std::optional<Rgba> pressedColor) {
    look_ = look;
    pressedColor_ = pressedColor;
    LookChanged();
}

void ButtonNode::SetTextLook(const TextLook& look, std::optional<Rgba> pressedColor) {
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
    textColor_ = color;
    LookChanged();
}

void ButtonNode::SetText(const std::string& text) {
    text_.SetText(text);
    LookChanged();
}

void ButtonNode::SetPicture(State state, PictureSource picture) {
    (state == State::kPressed ? pressedPicture_ : picture_) = std::move(picture);
    LookChanged();
}

void ButtonNode::DescribeLook(DrawList& list, const LookContext& context) {
    BoxLook look = look_;
    if (IsPressed()) {
        look.background = pressedColor_.value_or(Shaded(look_.background, kPressedShade));
        look.gradientBottom.reset();
    }
    if (look.borderAgainst && ContrastRatio(look_.background, *look.borderAgainst) >= kTellableContrast) {
        look.borderWidth = 0;
    }
    AddBox(list, look);
    AddPicture(list, WholeOf(list), IsPressed() && pressedPicture_.Get() ? pressedPicture_.Get() : picture_.Get());

    const Rgba textColor = IsPressed() ? pressedTextColor_.value_or(textColor_) : textColor_;
    std::optional<TextBlock::Edge> edge;
    if (look.background.alpha != 0) {
        double contrast = ContrastRatio(textColor, look.background);
        if (look.gradientBottom) contrast = std::min(contrast, ContrastRatio(textColor, *look.gradientBottom));
        const double strength = EdgeStrength(contrast);
        if (strength > 0) edge = {BlackOrWhiteAgainst(look.background), strength};
    }
    text_.Describe(context, TextAreaOf(list, look), textColor, edge, list);
}

void ButtonNode::DescribeInWords(std::vector<AccessiblePart>& parts) const {
    AccessiblePart part;
    part.role = IsFocusable()                         ? AccessibleRole::kButton
                : GetTextRank() == TextRank::kHeading ? AccessibleRole::kHeading
                                                      : AccessibleRole::kText;
    part.name = SpokenName(Text());
    part.bounds = {0, 0, Bounds().width, Bounds().height};
    parts.push_back(std::move(part));
}

}  // namespace host
