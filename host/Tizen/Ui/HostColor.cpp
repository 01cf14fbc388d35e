#include "Tizen/Ui/HostColor.h"

#include "backend/Geometry.h"

namespace Tizen {
namespace Ui {

host::Rgba ToHost(const Tizen::Graphics::Color& color) {
    return {color.GetRed(), color.GetGreen(), color.GetBlue(), color.GetAlpha()};
}

Tizen::Graphics::Color FromHost(const host::Rgba& color) {
    return {color.red, color.green, color.blue, color.alpha};
}

}  // namespace Ui
}  // namespace Tizen
