#include "runtime/screen/SwitchNode.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "runtime/screen/BoxDrawing.h"
#include "runtime/screen/Screen.h"

namespace host {

namespace {

constexpr double kTrackShape = 1.8;           ///< width of the track per height
constexpr double kTrackPerHeight = 0.8;       ///< height of the track per height of the control
constexpr double kKnobMarginPerHeight = 0.1;  ///< between knob and track, per height of the track
constexpr double kShadow = 0.06;              ///< the knob's shadow lies lower by this much of the track's height
constexpr double kPressedShade = 0.85;
constexpr Rgba kKnobColor{255, 255, 255, 255};
constexpr Rgba kShadowColor{0, 0, 0, 64};

Rgba Shaded(Rgba color) {
    const auto shade = [](std::uint8_t channel) {
        return static_cast<std::uint8_t>(std::lround(channel * kPressedShade));
    };
    return {shade(color.red), shade(color.green), shade(color.blue), color.alpha};
}

void AddDisc(DrawList& list, const RectF& rect, Rgba color) {
    DrawOperation operation;
    operation.kind = DrawOperation::Kind::kFillEllipse;
    operation.rect = rect;
    operation.color = color;
    list.Add(operation);
}

}  // namespace

void SwitchNode::SetColors(Rgba uncheckedColor, Rgba checkedColor) {
    uncheckedColor_ = uncheckedColor;
    checkedColor_ = checkedColor;
    LookChanged();
}

void SwitchNode::SetTextLook(const TextLook& look) {
    text_.SetLook(look);
    LookChanged();
}

void SwitchNode::SetText(const std::string& text) {
    text_.SetText(text);
    LookChanged();
}

void SwitchNode::SetChecked(bool isChecked) {
    if (isChecked == isChecked_) return;
    isChecked_ = isChecked;
    LookChanged();
}

void SwitchNode::DescribeLook(DrawList& list) {
    const SizeF size = list.Size();
    const double trackHeight = std::min(size.height * kTrackPerHeight, size.width / kTrackShape);
    const double trackWidth = trackHeight * kTrackShape;
    const RectF track{size.width - trackWidth, (size.height - trackHeight) / 2, trackWidth, trackHeight};
    const Rgba color = isChecked_ ? checkedColor_ : uncheckedColor_;
    AddFilling(list, track, trackHeight / 2, IsPressed() ? Shaded(color) : color);

    const double margin = trackHeight * kKnobMarginPerHeight;
    const double knob = trackHeight - 2 * margin;
    RectF place{isChecked_ ? track.x + track.width - margin - knob : track.x + margin, track.y + margin, knob, knob};
    RectF shadow = place;
    shadow.y += trackHeight * kShadow;
    AddDisc(list, shadow, kShadowColor);
    AddDisc(list, place, kKnobColor);

    const RectF left{0, 0, track.x - margin, size.height};
    text_.Describe(GetScreen().GetPainter(), GetScreen().GetScale(), left, text_.Look().color, std::nullopt, list);
}

}  // namespace host
