#pragma once

#include <string>
#include <vector>

#include "runtime/package/Layout.h"
#include "runtime/screen/controls/ActionNode.h"
#include "runtime/screen/controls/TextBlock.h"

namespace host {

/// A switch: a text at the left, a track with a knob at the right. UI thread only.
class SwitchNode final : public ActionNode {
public:
    using ActionNode::ActionNode;

    void SetColors(Rgba uncheckedColor, Rgba checkedColor);
    void SetTextLook(const TextLook& look);
    void SetText(const std::string& text);
    void SetChecked(bool isChecked);
    [[nodiscard]] bool IsChecked() const { return isChecked_; }

    void DescribeInWords(std::vector<AccessiblePart>& parts) const override;
    /// The track's.
    [[nodiscard]] Outline GetOutline() const override;

private:
    void Act() override { SetChecked(!isChecked_); }
    void DescribeLook(DrawList& list, const LookContext& context) override;

    Rgba uncheckedColor_;
    Rgba checkedColor_;
    TextBlock text_;
    bool isChecked_ = false;
};

}  // namespace host
