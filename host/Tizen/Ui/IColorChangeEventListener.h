#pragma once

#include "Tizen/Base/Runtime/IEventListener.h"
#include "Tizen/Graphics/Color.h"

namespace Tizen {
namespace Ui {

class Control;

/// Is told what colour the user picks, while the finger still moves at most once a frame of the display. UI thread.
class IColorChangeEventListener : virtual public Tizen::Base::Runtime::IEventListener {
public:
    virtual void OnColorChanged(const Control& source, const Tizen::Graphics::Color& color) = 0;
};

}  // namespace Ui
}  // namespace Tizen
