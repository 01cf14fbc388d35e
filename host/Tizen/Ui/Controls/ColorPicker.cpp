#include "Tizen/Ui/Controls/ColorPicker.h"

#include <array>
#include <cstddef>
#include <string>
#include <utility>

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

void ColorPicker::ApplyLayout(const host::LayoutControl& layout) {
    Control::ApplyLayout(layout);
    constexpr std::array<const char*, ColorPickerNode::kSliders> kIds{"IDS_SPOKEN_HUE",        "IDS_SPOKEN_SATURATION",
                                                                      "IDS_SPOKEN_BRIGHTNESS", "IDS_SPOKEN_RED",
                                                                      "IDS_SPOKEN_GREEN",      "IDS_SPOKEN_BLUE"};
    std::array<std::string, ColorPickerNode::kSliders> names;
    for (std::size_t slider = 0; slider < names.size(); ++slider) {
        const std::string* pName = GetScreen().GetPackage().FindString(kIds[slider]);
        if (pName == nullptr) return;
        names[slider] = *pName;
    }
    static_cast<ColorPickerNode&>(GetNode()).SetSliderNames(std::move(names));
}

void ColorPicker::OnColorChange() {
    const Color color = GetColor();
    listeners_.TellAll(GetNode().Token(),
                       [this, &color](IColorChangeEventListener& listener) { listener.OnColorChanged(*this, color); });
}

}  // namespace Controls
}  // namespace Ui
}  // namespace Tizen
