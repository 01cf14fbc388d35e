#pragma once

#include "Tizen/Graphics/Color.h"
#include "Tizen/Ui/Control.h"
#include "Tizen/Ui/ListenerList.h"

namespace Tizen {
namespace Ui {

class IColorChangeEventListener;

namespace Controls {

/// Lets the user choose a colour: by hue and saturation, by brightness, and exactly by its three channels or as
/// hexadecimal digits. Alpha stays as SetColor gave it.
class ColorPicker : public Control {
public:
    ColorPicker();
    ~ColorPicker() override;

    /// Shows the colour; reports nothing.
    void SetColor(const Tizen::Graphics::Color& color);
    Tizen::Graphics::Color GetColor() const;
    void AddColorChangeEventListener(IColorChangeEventListener& listener);

private:
    void ApplyLayout(const host::LayoutControl& layout) override;
    void OnColorChange() override;

    ListenerList<IColorChangeEventListener> listeners_;
};

}  // namespace Controls
}  // namespace Ui
}  // namespace Tizen
