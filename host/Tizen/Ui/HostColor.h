#pragma once

#include "Tizen/Graphics/Color.h"
#include "backend/Geometry.h"

namespace Tizen {
namespace Ui {

// Colours between the framework and the host. For the framework's own files only.

inline host::Rgba ToHost(const Tizen::Graphics::Color& color) {
    return {color.GetRed(), color.GetGreen(), color.GetBlue(), color.GetAlpha()};
}

inline Tizen::Graphics::Color FromHost(host::Rgba color) {
    return {color.red, color.green, color.blue, color.alpha};
}

}  // namespace Ui
}  // namespace Tizen
