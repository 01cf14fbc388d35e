#include "runtime/screen/controls/SwitchNode.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "runtime/screen/controls/BoxDrawing.h"

namespace host {

namespace {

constexpr double kTrackShape = 1.8;           ///< width of the track per height
constexpr double kTrackPerHeight = 0.8;       ///< height of the track per height of the control
constexpr double kKnobMarginPerHeight = 0.1;  ///< between knob and track, per height of the track
constexpr double kShadow = 0.06;              ///< the knob's shadow lies lower by this much of the track's height
constexpr double kPressedShade = 0.85;
constexpr Rgba kKnobColor{255, 255, 255, 255};
constexpr Rgba kShadowColor{0, 0, 0, 64};

// Where the track lies in a switch of that size.
RectF TrackIn(SizeF size) {
    const double height = std::min(size.height * kTrackPerHeight, size.width / kTrackShape);
    const double width = height * kTrackShape;
    return {size.width - width, (size.height - height) / 2, width, height};
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

Node::Outline SwitchNode::GetOutline() const {
    const RectF track = TrackIn(Size());
    return {track, track.height / 2};
}

void SwitchNode::DescribeLook(DrawList& list, const LookContext& context) {
    const SizeF size = list.Size();
    const RectF track = TrackIn(size);
    const double trackHeight = track.height;
    const Rgba color = isChecked_ ? checkedColor_ : uncheckedColor_;
    AddFilling(list, track, trackHeight / 2, IsPressed() ? Shaded(color, kPressedShade) : color);

    const double margin = trackHeight * kKnobMarginPerHeight;
    const double knob = trackHeight - 2 * margin;
    RectF place{isChecked_ ? track.x + track.width - margin - knob : track.x + margin, track.y + margin, knob, knob};
    RectF shadow = place;
    shadow.y += trackHeight * kShadow;
    list.Add(FilledEllipse{shadow, kShadowColor});
    list.Add(FilledEllipse{place, kKnobColor});

    const RectF left{0, 0, track.x - margin, size.height};
    text_.Describe(context, left, text_.Look().color, std::nullopt, list);
}

void SwitchNode::DescribeInWords(std::vector<AccessiblePart>& parts) const {
    AccessiblePart part;
    part.role = AccessibleRole::kSwitch;
    part.name = SpokenName(text_.Look().text);
    part.bounds = {0, 0, Bounds().width, Bounds().height};
    part.isOn = isChecked_;
    parts.push_back(std::move(part));
}

}  // namespace host
