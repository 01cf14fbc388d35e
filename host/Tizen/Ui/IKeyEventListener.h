#pragma once

#include "Tizen/Base/Runtime/IEventListener.h"

namespace Tizen {
namespace Ui {

class Control;

/// Is told of the phone's keys while the form or popup it was added to is the topmost one. UI thread.
class IKeyEventListener : virtual public Tizen::Base::Runtime::IEventListener {
public:
    virtual void OnKeyPressed(const Control& source, int keyCode) = 0;
    /// Comes only to the screen that was told of the press.
    virtual void OnKeyReleased(const Control& source, int keyCode) = 0;
    /// Never called: this phone's keys know no long press.
    virtual void OnKeyLongPressed(const Control& source, int keyCode) = 0;
};

}  // namespace Ui
}  // namespace Tizen
