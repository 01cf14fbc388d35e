#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "runtime/package/Layout.h"
#include "runtime/package/PictureSource.h"
#include "runtime/screen/controls/ActionNode.h"
#include "runtime/screen/controls/TextBlock.h"

namespace host {

/// A button: a box in the colour and with the picture of its state, and a text that can be read on it whatever the
/// colours are. UI thread only.
class ButtonNode final : public ActionNode {
public:
    using ActionNode::ActionNode;

    enum class State { kNormal, kPressed };

    /// Without a colour of its own, the pressed button is a little darker than the other.
    void SetLook(const BoxLook& look, std::optional<Rgba> pressedColor);
    /// Without a colour of its own, the pressed button's text has that of the other.
    void SetTextLook(const TextLook& look, std::optional<Rgba> pressedColor);
    void SetColor(State state, Rgba color);
    /// In both states, but for a pressed one that has a colour of its own.
    void SetTextColor(Rgba color);
    void SetText(const std::string& text);
    [[nodiscard]] const std::string& Text() const { return text_.Look().text; }
    /// Without one for kPressed that of kNormal shows.
    void SetPicture(State state, PictureSource picture);

    /// A button that nobody listens to is a mere text.
    void DescribeInWords(std::vector<AccessiblePart>& parts) const override;
    [[nodiscard]] Outline GetOutline() const override { return {{0, 0, Size().width, Size().height}, look_.corner}; }

private:
    void DescribeLook(DrawList& list, const LookContext& context) override;

    BoxLook look_;
    std::optional<Rgba> pressedColor_;
    TextBlock text_;
    Rgba textColor_;
    std::optional<Rgba> pressedTextColor_;
    PictureSource picture_;
    PictureSource pressedPicture_;
};

}  // namespace host
