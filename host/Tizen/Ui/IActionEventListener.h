#pragma once

#include "Tizen/Base/Runtime/IEventListener.h"

namespace Tizen {
namespace Ui {

class Control;

/// Is told when the user has pressed a button or moved a switch. UI thread.
class IActionEventListener : virtual public Tizen::Base::Runtime::IEventListener {
public:
    /// `actionId` is the one that the control was given.
    virtual void OnActionPerformed(const Control& source, int actionId) = 0;
};

}  // namespace Ui
}  // namespace Tizen
