#pragma once

#include "Tizen/Base/Runtime/IEventListener.h"

namespace Tizen {
namespace System {

/// Is told when the phone's screen is switched on and off.
class IScreenEventListener : virtual public Tizen::Base::Runtime::IEventListener {
public:
    virtual void OnScreenOn() = 0;
    virtual void OnScreenOff() = 0;
    /// `brightness` is in the phone's own steps.
    virtual void OnScreenBrightnessChanged(int brightness);
};

inline void IScreenEventListener::OnScreenBrightnessChanged(int) {}

}  // namespace System
}  // namespace Tizen
