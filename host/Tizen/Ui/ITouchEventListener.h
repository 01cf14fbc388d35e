#pragma once

#include "Tizen/Base/Runtime/IEventListener.h"
#include "Tizen/Graphics/Point.h"
#include "Tizen/Ui/TouchEventInfo.h"

namespace Tizen {
namespace Ui {

class Control;

/// Is told of the fingers on a control, in the control's own coordinates. Every press is followed by one release, also
/// when the finger was taken away by something else. UI thread.
class ITouchEventListener : virtual public Tizen::Base::Runtime::IEventListener {
public:
    virtual void OnTouchPressed(const Control& source, const Tizen::Graphics::Point& currentPosition,
                                const TouchEventInfo& touchInfo) = 0;
    virtual void OnTouchReleased(const Control& source, const Tizen::Graphics::Point& currentPosition,
                                 const TouchEventInfo& touchInfo) = 0;
    virtual void OnTouchMoved(const Control& source, const Tizen::Graphics::Point& currentPosition,
                              const TouchEventInfo& touchInfo) = 0;

    // Never called: this phone recognises no gestures, a finger belongs to the control on which it was put down, and
    // one that the system takes away is reported as released.
    virtual void OnTouchDoublePressed(const Control& source, const Tizen::Graphics::Point& currentPosition,
                                      const TouchEventInfo& touchInfo) = 0;
    virtual void OnTouchLongPressed(const Control& source, const Tizen::Graphics::Point& currentPosition,
                                    const TouchEventInfo& touchInfo) = 0;
    virtual void OnTouchFocusIn(const Control& source, const Tizen::Graphics::Point& currentPosition,
                                const TouchEventInfo& touchInfo) = 0;
    virtual void OnTouchFocusOut(const Control& source, const Tizen::Graphics::Point& currentPosition,
                                 const TouchEventInfo& touchInfo) = 0;
    virtual void OnTouchCanceled(const Control&, const Tizen::Graphics::Point&, const TouchEventInfo&) {}
};

}  // namespace Ui
}  // namespace Tizen
