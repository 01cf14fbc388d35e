#pragma once

#include "Tizen/Graphics/Color.h"

namespace host {
struct Rgba;
}

namespace Tizen {
namespace Ui {

// Colours between the framework and the host. For the framework's own files only.
host::Rgba ToHost(const Tizen::Graphics::Color& color);
Tizen::Graphics::Color FromHost(const host::Rgba& color);

}  // namespace Ui
}  // namespace Tizen
