#include "Tizen/Ui/Controls/ColorPicker.h"

#include "Tizen/Ui/HostColor.h"
#include "Tizen/Ui/IColorChangeEventListener.h"
#include "runtime/screen/Screen.h"
#include "runtime/screen/controls/ColorPickerNode.h"

namespace Tizen {
namespace Ui {
namespace Controls {

using host::ColorPickerNode;
using Tizen::Graphics::Color;

ColorPicker::ColorPicker() : Control(std::make_unique<ColorPickerNode>(GetScreen(), GetScreen().GetLoop())) {}

ColorPicker::~ColorPicker() = default;

void ColorPicker::SetColor(const Color& color) {
    static_cast<ColorPickerNode&>(GetNode()).SetColor(ToHost(color));
}

Color ColorPicker::GetColor() const {
    return FromHost(static_cast<const ColorPickerNode&>(GetNode()).GetColor());
}

void ColorPicker::AddColorChangeEventListener(IColorChangeEventListener& listener) {
    listeners_.Add(listener);
}

void ColorPicker::OnColorChange() {
    const Color color = GetColor();
    listeners_.TellAll(GetNode().Token(),
                       [this, &color](IColorChangeEventListener& listener) { listener.OnColorChanged(*this, color); });
}

}  // namespace Controls
}  // namespace Ui
}  // namespace Tizen
