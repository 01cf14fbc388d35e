#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "runtime/loop/EventLoop.h"
#include "runtime/loop/TimerQueue.h"
#include "runtime/screen/Node.h"
#include "runtime/screen/controls/PickedColor.h"
#include "runtime/screen/controls/TextBlock.h"

namespace host {

/// Where the parts of a colour picker lie in it, in the phone's pixels.
struct ColorPickerParts {
    explicit ColorPickerParts(SizeF size);

    double unit;   ///< pixels per unit of the drawing that the picker was designed on
    RectF field;   ///< hue from left to right, saturation from bottom to top
    RectF slider;  ///< brightness from bottom to top
    RectF swatch;
    RectF digits;
    struct Channel {
        RectF value;
        RectF minus;
        RectF plus;
    };
    std::array<Channel, PickedColor::kChannels> channels;
    /// The keys for typing the value, which take the place of field and slider: the sixteen digits, then the two below.
    static constexpr std::size_t kEraseKey = 16;
    static constexpr std::size_t kLeaveKey = 17;
    static constexpr std::size_t kKeyCount = 18;
    std::array<RectF, kKeyCount> keys;
};

/// Picks a colour: a field for hue and saturation, a slider for brightness, a swatch with the value in hexadecimal, and
/// steppers for red, green and blue that repeat while they are held, faster with time. A touch of the value brings keys
/// to type another. With the focus, arrows choose and move a channel and hexadecimal digits type the value. UI thread
/// only.
class ColorPickerNode final : public Node {
public:
    /// `loop` outlives the node.
    ColorPickerNode(NodeHost& host, EventLoop& loop);
    ~ColorPickerNode() override;

    /// Reports nothing. What a finger held of the former colour is let go.
    void SetColor(Rgba color);
    [[nodiscard]] Rgba GetColor() const { return picked_.Color(); }
    /// As if the user had chosen the colour; it is reported at once. May destroy the node.
    void Pick(Rgba color);

    /// The things that move: hue in degrees, saturation and brightness in percent, red, green and blue.
    static constexpr std::size_t kSliders = 6;
    /// What they are called, in that order.
    void SetSliderNames(std::array<std::string, kSliders> names) { sliderNames_ = std::move(names); }
    void DescribeInWords(std::vector<AccessiblePart>& parts) const override;
    /// Reported at once.
    bool SetPartValue(std::size_t part, int value) override;

    void OnFinger(const FingerEvent& event) override;
    [[nodiscard]] bool IsFocusable() const override { return true; }
    bool OnFocusKey(const FocusKeyEvent& event) override;
    void OnFocusChanged(FocusState state) override;
    void FlushReports() override;

private:
    enum class Part { kNone, kField, kSlider, kStepper, kKey };

    void DescribeLook(DrawList& list, const LookContext& context) override;
    void DescribeField(const ColorPickerParts& parts, const LookContext& context, DrawList& list);
    void DescribeSlider(const ColorPickerParts& parts, DrawList& list) const;
    void DescribeValue(const ColorPickerParts& parts, const LookContext& context, DrawList& list);
    void DescribeChannel(int channel, const ColorPickerParts& parts, const LookContext& context, DrawList& list);
    void DescribeText(TextBlock& block, const std::string& text, const RectF& box, double size, HorizontalAlign align,
                      const LookContext& context, DrawList& list);

    void DescribeKeys(const ColorPickerParts& parts, const LookContext& context, DrawList& list);
    void Press(const ColorPickerParts& parts, PointF place);
    void PressKey(std::size_t key);
    /// Shows or hides the keys; what was typed so far is dropped.
    void ShowKeys(bool areShown);
    void Drag(const ColorPickerParts& parts, PointF place);
    void EndDrag();
    void Step();
    void RepeatStepAfter(Microseconds delay);
    void Type(int digit);
    /// Shows the colour that was picked, and has it reported.
    void Changed();
    [[nodiscard]] std::string DigitsText() const;

    EventLoop& loop_;
    PickedColor picked_;
    std::shared_ptr<const Picture> fieldPicture_;

    Part held_ = Part::kNone;
    int heldChannel_ = 0;
    int heldStep_ = 0;
    int repeats_ = 0;  ///< of the held stepper
    std::size_t heldKey_ = 0;
    bool isHeldInside_ = false;
    TimerQueue::Id repeatTimer_ = TimerQueue::kNone;

    bool isReportDue_ = false;
    bool hasFocus_ = false;
    int keyChannel_ = 0;
    std::string typed_;  ///< hexadecimal digits, until there are six
    bool areKeysShown_ = false;
    std::array<std::string, kSliders> sliderNames_{"Hue", "Saturation", "Brightness", "Red", "Green", "Blue"};

    TextBlock digitsText_;
    std::array<TextBlock, ColorPickerParts::kKeyCount> keyTexts_;
    std::array<TextBlock, PickedColor::kChannels> nameTexts_;
    std::array<TextBlock, PickedColor::kChannels> valueTexts_;
};

}  // namespace host
