#pragma once

#include <memory>
#include <string>

#include "runtime/package/Layout.h"
#include "runtime/screen/controls/ActionNode.h"
#include "runtime/screen/controls/TextBlock.h"

namespace host {

/// A button: a box in the colour and with the picture of its state, and a text that can be read on it whatever the
/// colours are. UI thread only.
class ButtonNode final : public ActionNode {
public:
    using ActionNode::ActionNode;

    enum class State { kNormal, kPressed };

    void SetLook(const BoxLook& look, Rgba pressedColor);
    void SetTextLook(const TextLook& look, Rgba pressedColor);
    void SetColor(State state, Rgba color);
    /// In both states.
    void SetTextColor(Rgba color);
    void SetText(const std::string& text);
    [[nodiscard]] const std::string& Text() const { return text_.Look().text; }
    /// Without one for kPressed that of kNormal shows.
    void SetPicture(State state, std::shared_ptr<const Picture> picture);

    [[nodiscard]] double Corner() const override { return look_.corner; }

private:
    void DescribeLook(DrawList& list, const LookContext& context) override;

    BoxLook look_;
    Rgba pressedColor_;
    TextBlock text_;
    Rgba textColor_;
    Rgba pressedTextColor_;
    std::shared_ptr<const Picture> picture_;
    std::shared_ptr<const Picture> pressedPicture_;
};

}  // namespace host
