#pragma once

#include "Tizen/Graphics/Bitmap.h"
#include "Tizen/Ui/Control.h"

namespace Tizen {
namespace Ui {
namespace Controls {

/// Shows a text, a picture or both.
class Label : public Control {
public:
    Label();
    ~Label() override;

    result SetText(const Tizen::Base::String& text);
    /// The picture that lies under the text, scaled into the bounds. The label keeps its own copy.
    result SetBackgroundBitmap(const Tizen::Graphics::Bitmap& bitmap);

private:
    void ApplyLayout(const host::LayoutControl& layout) override;
};

}  // namespace Controls
}  // namespace Ui
}  // namespace Tizen
