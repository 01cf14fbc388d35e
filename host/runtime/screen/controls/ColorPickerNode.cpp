#include "runtime/screen/controls/ColorPickerNode.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <utility>
#include <vector>

#include "runtime/screen/controls/BoxDrawing.h"
#include "runtime/screen/controls/Contrast.h"

namespace host {

namespace {

// The drawing that the picker was designed on; the parts' places below count in its units.
constexpr double kDesignWidth = 640;
constexpr double kDesignHeight = 656;
constexpr RectF kField{16, 16, 524, 340};
constexpr RectF kSlider{572, 16, 52, 340};
constexpr RectF kSwatch{16, 380, 296, 92};
constexpr RectF kDigits{328, 380, 296, 92};
constexpr double kChannelDistance = 208;
constexpr RectF kValue{32, 488, 160, 60};
constexpr RectF kMinus{16, 552, 92, 92};
constexpr RectF kPlus{116, 552, 92, 92};

constexpr RectF kKeys{16, 16, 608, 340};
constexpr std::size_t kKeyColumns = 6;
constexpr std::size_t kKeyRows = 3;
constexpr double kKeyGap = 10;

constexpr double kReach = 16;  ///< how far beside field and slider a finger still means them
constexpr double kCorner = 14;
constexpr double kLine = 3;
constexpr double kMarkerRadius = 15;
constexpr double kThumbHeight = 22;
constexpr double kThumbOverhang = 8;
constexpr double kSignLength = 32;
constexpr double kSignWidth = 6;
constexpr double kDigitsSize = 44;
constexpr double kNameSize = 30;
constexpr double kValueSize = 36;
constexpr double kSmallestTextPart = 0.5;  ///< of a text's size, where it does not fit

constexpr Rgba kInk{58, 34, 40, 255};
constexpr Rgba kPaper{255, 255, 255, 255};
constexpr Rgba kPressedPaper{225, 214, 208, 255};
constexpr Rgba kBlack{0, 0, 0, 255};
constexpr std::array<const char*, PickedColor::kChannels> kChannelNames{"R", "G", "B"};

// The colours run evenly between these points, so that scaling them up shows every one.
constexpr int kFieldPointsPerSixth = 32;
constexpr PixelSize kFieldPoints{6 * kFieldPointsPerSixth, 64};

constexpr Microseconds kRepeatDelay = 400 * kMicrosecondsPerMillisecond;
constexpr Microseconds kRepeatInterval = 60 * kMicrosecondsPerMillisecond;
constexpr int kShiftedStep = 16;
// A held stepper takes its time for the first few values and then hurries, so that it is through all 256 in 3 s: even
// with timers that fire a frame late 40 repeats fit in after the delay, and 1 + 12 * 1 + 12 * 4 + 16 * 13 = 269.
constexpr int kSlowRepeats = 12;
constexpr int kQuickRepeats = 24;
constexpr int kQuickStep = 4;
constexpr int kHurriedStep = 13;
constexpr std::size_t kHexDigits = 6;
constexpr int kHexBase = 16;

constexpr const char* kHexDigitNames = "0123456789ABCDEF";

std::string NameOfKey(std::size_t key) {
    if (key == ColorPickerParts::kEraseKey) return "←";
    if (key == ColorPickerParts::kLeaveKey) return "×";
    return std::string(1, kHexDigitNames[key]);
}

void AddCircle(DrawList& list, PointF center, double radius, double lineWidth, Rgba color) {
    const RectF rect{center.x - radius, center.y - radius, 2 * radius, 2 * radius};
    if (lineWidth > 0) {
        list.Add(StrokedEllipse{rect, lineWidth, color});
    } else {
        list.Add(FilledEllipse{rect, color});
    }
}

// Hue in degrees, saturation and brightness in percent, then the channels.
constexpr std::size_t kHueSlider = 0;
constexpr std::size_t kSaturationSlider = 1;
constexpr std::size_t kBrightnessSlider = 2;
constexpr std::size_t kFirstChannelSlider = 3;
constexpr int kDegrees = 360;
constexpr int kPercent = 100;
constexpr int kMostOfChannel = 255;

PixelRect PixelsOf(const RectF& rect) {
    const auto edge = [](double position) { return static_cast<int>(std::lround(position)); };
    return {edge(rect.x), edge(rect.y), edge(rect.x + rect.width) - edge(rect.x),
            edge(rect.y + rect.height) - edge(rect.y)};
}

}  // namespace

ColorPickerParts::ColorPickerParts(SizeF size) {
    const double scaleX = size.width / kDesignWidth;
    const double scaleY = size.height / kDesignHeight;
    unit = std::min(scaleX, scaleY);
    const auto scaled = [scaleX, scaleY](const RectF& rect, double shift = 0) {
        return RectF{(rect.x + shift) * scaleX, rect.y * scaleY, rect.width * scaleX, rect.height * scaleY};
    };
    field = scaled(kField);
    slider = scaled(kSlider);
    swatch = scaled(kSwatch);
    digits = scaled(kDigits);
    constexpr double kKeyWidth = (kKeys.width - (kKeyColumns - 1) * kKeyGap) / kKeyColumns;
    constexpr double kKeyHeight = (kKeys.height - (kKeyRows - 1) * kKeyGap) / kKeyRows;
    for (std::size_t key = 0; key < keys.size(); ++key) {
        const std::size_t column = key % kKeyColumns;
        const std::size_t row = key / kKeyColumns;
        keys[key] = scaled({kKeys.x + static_cast<double>(column) * (kKeyWidth + kKeyGap),
                            kKeys.y + static_cast<double>(row) * (kKeyHeight + kKeyGap), kKeyWidth, kKeyHeight});
    }
    double shift = 0;
    for (Channel& channel : channels) {
        channel = {scaled(kValue, shift), scaled(kMinus, shift), scaled(kPlus, shift)};
        shift += kChannelDistance;
    }
}

ColorPickerNode::ColorPickerNode(NodeHost& host, EventLoop& loop) : Node(host), loop_(loop) {}

ColorPickerNode::~ColorPickerNode() {
    loop_.CancelTimer(repeatTimer_);
}

void ColorPickerNode::SetColor(Rgba color) {
    isReportDue_ = false;
    EndDrag();
    picked_.Set(color);
    ShowKeys(false);
}

void ColorPickerNode::Pick(Rgba color) {
    picked_.Set(color);
    Changed();
    FlushReports();
}

void ColorPickerNode::OnFinger(const FingerEvent& event) {
    const ColorPickerParts parts(Size());
    const std::weak_ptr<Node> token = Token();
    switch (event.phase) {
        case FingerEvent::Phase::kPress:
            Press(parts, event.position);
            break;
        case FingerEvent::Phase::kMove:
            Drag(parts, event.position);
            break;
        case FingerEvent::Phase::kRelease:
            Drag(parts, event.position);
            EndDrag();
            break;
        case FingerEvent::Phase::kCancel:
            EndDrag();
            break;
    }
    if (!token.expired()) Node::OnFinger(event);
}

void ColorPickerNode::Press(const ColorPickerParts& parts, PointF place) {
    if (parts.digits.Contains(place)) {
        ShowKeys(!areKeysShown_);
        return;
    }
    if (areKeysShown_) {
        const auto key =
            std::find_if(parts.keys.begin(), parts.keys.end(), [&](const RectF& rect) { return rect.Contains(place); });
        if (key != parts.keys.end()) {
            PressKey(static_cast<std::size_t>(key - parts.keys.begin()));
            return;
        }
    }
    const double reach = kReach * parts.unit;
    if (areKeysShown_) {
        // Neither field nor slider is there.
    } else if (parts.field.Grown(reach).Contains(place)) {
        held_ = Part::kField;
    } else if (parts.slider.Grown(reach).Contains(place)) {
        held_ = Part::kSlider;
    }
    if (held_ != Part::kNone) {
        Drag(parts, place);
        return;
    }
    for (int channel = 0; channel < PickedColor::kChannels; ++channel) {
        const auto& part = parts.channels[static_cast<std::size_t>(channel)];
        const bool isMinus = part.minus.Contains(place);
        if (!isMinus && !part.plus.Contains(place)) continue;
        held_ = Part::kStepper;
        heldChannel_ = channel;
        heldStep_ = isMinus ? -1 : 1;
        isHeldInside_ = true;
        repeats_ = 0;
        Step();
        RepeatStepAfter(kRepeatDelay);
    }
}

void ColorPickerNode::PressKey(std::size_t key) {
    held_ = Part::kKey;
    heldKey_ = key;
    LookChanged();
    if (key == ColorPickerParts::kLeaveKey) {
        ShowKeys(false);
    } else if (key == ColorPickerParts::kEraseKey) {
        if (!typed_.empty()) typed_.pop_back();
    } else {
        Type(static_cast<int>(key));
    }
}

void ColorPickerNode::ShowKeys(bool areShown) {
    areKeysShown_ = areShown;
    typed_.clear();
    LookChanged();
}

void ColorPickerNode::Drag(const ColorPickerParts& parts, PointF place) {
    switch (held_) {
        case Part::kNone:
        case Part::kKey:
            break;
        case Part::kField:
            picked_.SetHueAndSaturation((place.x - parts.field.x) / parts.field.width * PickedColor::kHueEnd,
                                        1 - (place.y - parts.field.y) / parts.field.height);
            Changed();
            break;
        case Part::kSlider:
            picked_.SetBrightness(1 - (place.y - parts.slider.y) / parts.slider.height);
            Changed();
            break;
        case Part::kStepper: {
            const auto& part = parts.channels[static_cast<std::size_t>(heldChannel_)];
            isHeldInside_ = (heldStep_ < 0 ? part.minus : part.plus).Contains(place);
            LookChanged();
            break;
        }
    }
}

void ColorPickerNode::EndDrag() {
    held_ = Part::kNone;
    loop_.CancelTimer(std::exchange(repeatTimer_, TimerQueue::kNone));
    LookChanged();
    FlushReports();
}

void ColorPickerNode::Step() {
    const int pace = repeats_ <= kSlowRepeats ? 1 : repeats_ <= kQuickRepeats ? kQuickStep : kHurriedStep;
    picked_.SetChannel(heldChannel_, picked_.Channel(heldChannel_) + heldStep_ * pace);
    Changed();
}

void ColorPickerNode::RepeatStepAfter(Microseconds delay) {
    repeatTimer_ = loop_.StartTimer(delay, [this] {
        if (isHeldInside_) {
            ++repeats_;
            Step();
        }
        RepeatStepAfter(kRepeatInterval);
    });
}

bool ColorPickerNode::OnFocusKey(const FocusKeyEvent& event) {
    const int step = event.shift == ShiftKey::kHeld ? kShiftedStep : 1;
    switch (event.key) {
        case FocusKey::kActivate:
            return true;
        case FocusKey::kLeft:
        case FocusKey::kRight:
            keyChannel_ += event.key == FocusKey::kRight ? 1 : PickedColor::kChannels - 1;
            keyChannel_ %= PickedColor::kChannels;
            LookChanged();
            return true;
        case FocusKey::kUp:
        case FocusKey::kDown:
            picked_.SetChannel(keyChannel_, picked_.Channel(keyChannel_) + (event.key == FocusKey::kUp ? step : -step));
            Changed();
            return true;
        case FocusKey::kErase:
            if (!typed_.empty()) typed_.pop_back();
            LookChanged();
            return true;
        case FocusKey::kDigit:
            if (event.stroke == KeyStroke::kFirst) Type(event.digit);
            return true;
    }
    return false;
}

void ColorPickerNode::Type(int digit) {
    typed_ += kHexDigitNames[digit];
    LookChanged();
    if (typed_.size() < kHexDigits) return;
    const auto channel = [this](std::size_t first) {
        return static_cast<std::uint8_t>(std::stoi(typed_.substr(first, 2), nullptr, kHexBase));
    };
    picked_.Set({channel(0), channel(2), channel(4), picked_.Color().alpha});
    areKeysShown_ = false;
    Changed();
}

void ColorPickerNode::OnFocusChanged(FocusState state) {
    hasFocus_ = state == FocusState::kGained;
    typed_.clear();
    LookChanged();
}

void ColorPickerNode::Changed() {
    typed_.clear();
    isReportDue_ = true;
    WantReport();
    LookChanged();
}

void ColorPickerNode::FlushReports() {
    if (!std::exchange(isReportDue_, false)) return;
    if (Delegate() != nullptr) Delegate()->OnColorChange();
}

std::string ColorPickerNode::DigitsText() const {
    if (areKeysShown_ || !typed_.empty()) return '#' + typed_ + std::string(kHexDigits - typed_.size(), '_');
    const Rgba color = picked_.Color();
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "#%02X%02X%02X", unsigned{color.red}, unsigned{color.green},
                  unsigned{color.blue});
    return text.data();
}

void ColorPickerNode::DescribeLook(DrawList& list, const LookContext& context) {
    const ColorPickerParts parts(list.Size());
    if (areKeysShown_) {
        DescribeKeys(parts, context, list);
    } else {
        DescribeField(parts, context, list);
        DescribeSlider(parts, list);
    }
    DescribeValue(parts, context, list);
    for (int channel = 0; channel < PickedColor::kChannels; ++channel) DescribeChannel(channel, parts, context, list);
}

void ColorPickerNode::DescribeField(const ColorPickerParts& parts, const LookContext& context, DrawList& list) {
    if (!fieldPicture_) {
        Image image{kFieldPoints, {}};
        image.pixels.reserve(static_cast<std::size_t>(kFieldPoints.width) * kFieldPoints.height);
        for (int y = 0; y < kFieldPoints.height; ++y) {
            for (int x = 0; x < kFieldPoints.width; ++x) {
                image.pixels.push_back(
                    PickedColor::FromHsv((x + 0.5) / kFieldPointsPerSixth, 1 - (y + 0.5) / kFieldPoints.height, 1));
            }
        }
        fieldPicture_ = context.painter.CreatePicture(image);
    }
    AddPicture(list, parts.field, fieldPicture_);
    AddOutline(list, parts.field, 0, kLine * parts.unit, kInk);

    const PointF place{parts.field.x + picked_.Hue() / PickedColor::kHueEnd * parts.field.width,
                       parts.field.y + (1 - picked_.Saturation()) * parts.field.height};
    const double line = kLine * parts.unit;
    const double radius = kMarkerRadius * parts.unit - line;
    AddCircle(list, place, radius, 0, PickedColor::FromHsv(picked_.Hue(), picked_.Saturation(), 1));
    AddCircle(list, place, radius + line / 2, line, kInk);
    AddCircle(list, place, radius - line / 2, line, kPaper);
}

void ColorPickerNode::DescribeSlider(const ColorPickerParts& parts, DrawList& list) const {
    const double line = kLine * parts.unit;
    list.Add(FilledGradient{parts.slider, {}, PickedColor::FromHsv(picked_.Hue(), picked_.Saturation(), 1), kBlack});
    AddOutline(list, parts.slider, 0, line, kInk);

    const double overhang = kThumbOverhang * parts.unit;
    const double height = kThumbHeight * parts.unit;
    const double center = parts.slider.y + (1 - picked_.Brightness()) * parts.slider.height;
    const RectF thumb{parts.slider.x - overhang, center - height / 2, parts.slider.width + 2 * overhang, height};
    AddFilling(list, thumb, height / 2, kPaper);
    AddOutline(list, thumb, height / 2, line, kInk);
}

void ColorPickerNode::DescribeValue(const ColorPickerParts& parts, const LookContext& context, DrawList& list) {
    const double corner = kCorner * parts.unit;
    AddFilling(list, parts.swatch, corner, kPaper);
    AddFilling(list, parts.swatch, corner, picked_.Color());
    AddOutline(list, parts.swatch, corner, kLine * parts.unit, kInk);
    AddFilling(list, parts.digits, corner, kPaper);
    AddOutline(list, parts.digits, corner, kLine * parts.unit, kInk);
    DescribeText(digitsText_, DigitsText(), parts.digits, kDigitsSize * parts.unit, HorizontalAlign::kCenter, context,
                 list);
}

void ColorPickerNode::DescribeKeys(const ColorPickerParts& parts, const LookContext& context, DrawList& list) {
    const double corner = kCorner * parts.unit;
    for (std::size_t key = 0; key < parts.keys.size(); ++key) {
        const bool isPressed = held_ == Part::kKey && heldKey_ == key;
        AddFilling(list, parts.keys[key], corner, isPressed ? kPressedPaper : kPaper);
        AddOutline(list, parts.keys[key], corner, kLine * parts.unit, kInk);
        DescribeText(keyTexts_[key], NameOfKey(key), parts.keys[key], kDigitsSize * parts.unit,
                     HorizontalAlign::kCenter, context, list);
    }
}

void ColorPickerNode::DescribeChannel(int channel, const ColorPickerParts& parts, const LookContext& context,
                                      DrawList& list) {
    const auto index = static_cast<std::size_t>(channel);
    const auto& part = parts.channels[index];
    const double corner = kCorner * parts.unit;
    const double line = kLine * parts.unit;
    if (hasFocus_ && channel == keyChannel_) AddOutline(list, part.value, corner, 2 * line, kInk);
    const double inset = corner;
    const RectF inside{part.value.x + inset, part.value.y, part.value.width - 2 * inset, part.value.height};
    DescribeText(nameTexts_[index], kChannelNames[index], inside, kNameSize * parts.unit, HorizontalAlign::kLeft,
                 context, list);
    DescribeText(valueTexts_[index], std::to_string(picked_.Channel(channel)), inside, kValueSize * parts.unit,
                 HorizontalAlign::kRight, context, list);

    for (const int step : {-1, 1}) {
        const RectF& place = step < 0 ? part.minus : part.plus;
        const bool isPressed = held_ == Part::kStepper && isHeldInside_ && heldChannel_ == channel && heldStep_ == step;
        AddFilling(list, place, corner, isPressed ? kPressedPaper : kPaper);
        AddOutline(list, place, corner, line, kInk);
        const PointF center{place.x + place.width / 2, place.y + place.height / 2};
        const double length = kSignLength * parts.unit;
        const double width = kSignWidth * parts.unit;
        AddFilling(list, {center.x - length / 2, center.y - width / 2, length, width}, 0, kInk);
        if (step > 0) AddFilling(list, {center.x - width / 2, center.y - length / 2, width, length}, 0, kInk);
    }
}

void ColorPickerNode::DescribeText(TextBlock& block, const std::string& text, const RectF& box, double size,
                                   HorizontalAlign align, const LookContext& context, DrawList& list) {
    TextLook look;
    look.text = text;
    look.size = size;
    look.smallestSize = size * kSmallestTextPart;
    look.weight = FontWeight::kBold;
    look.align = align;
    look.color = kInk;
    block.SetLook(look);
    block.Describe(context, box, kInk, std::nullopt, list);
}

void ColorPickerNode::DescribeInWords(std::vector<AccessiblePart>& parts) const {
    const ColorPickerParts places(Size());
    const auto add = [this, &parts](const RectF& place, double value, int most) {
        AccessiblePart part;
        part.role = AccessibleRole::kSlider;
        part.name = sliderNames_[parts.size()];
        part.bounds = PixelsOf(place);
        part.value = static_cast<int>(std::lround(value));
        part.most = most;
        parts.push_back(std::move(part));
    };
    // The field moves along two axes: its upper and its lower half stand for one each.
    const RectF& field = places.field;
    const double half = field.height / 2;
    add({field.x, field.y, field.width, half}, picked_.Hue() / PickedColor::kHueEnd * kDegrees, kDegrees);
    add({field.x, field.y + half, field.width, half}, picked_.Saturation() * kPercent, kPercent);
    add(places.slider, picked_.Brightness() * kPercent, kPercent);
    for (int channel = 0; channel < PickedColor::kChannels; ++channel) {
        add(places.channels[static_cast<std::size_t>(channel)].value, picked_.Channel(channel), kMostOfChannel);
    }
}

bool ColorPickerNode::SetPartValue(std::size_t part, int value) {
    switch (part) {
        case kHueSlider:
            picked_.SetHueAndSaturation(value * PickedColor::kHueEnd / kDegrees, picked_.Saturation());
            break;
        case kSaturationSlider:
            picked_.SetHueAndSaturation(picked_.Hue(), static_cast<double>(value) / kPercent);
            break;
        case kBrightnessSlider:
            picked_.SetBrightness(static_cast<double>(value) / kPercent);
            break;
        default:
            if (part >= kSliders) return false;
            picked_.SetChannel(static_cast<int>(part - kFirstChannelSlider), value);
            break;
    }
    Changed();
    FlushReports();
    return true;
}

}  // namespace host
