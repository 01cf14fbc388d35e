#pragma once

#include <memory>
#include <string>
#include <vector>

#include "runtime/package/Layout.h"
#include "runtime/package/PictureSource.h"
#include "runtime/screen/Node.h"
#include "runtime/screen/controls/TextBlock.h"

namespace host {

/// A box with a picture and a text in it: what labels, panels, forms and popups are. UI thread only.
class BoxNode final : public Node {
public:
    using Node::Node;

    void SetLook(const BoxLook& look);
    void SetBackground(Rgba color);
    [[nodiscard]] Rgba Background() const { return look_.background; }
    /// Null for none.
    void SetPicture(PictureSource picture);
    void SetTextLook(const TextLook& look);
    void SetText(const std::string& text);
    [[nodiscard]] const std::string& Text() const { return text_.Look().text; }
    void DescribeInWords(std::vector<AccessiblePart>& parts) const override;

private:
    void DescribeLook(DrawList& list, const LookContext& context) override;

    BoxLook look_;
    PictureSource picture_;
    TextBlock text_;
};

}  // namespace host
