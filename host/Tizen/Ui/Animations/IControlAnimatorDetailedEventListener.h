#pragma once

#include "Tizen/Base/Runtime/IEventListener.h"

namespace Tizen {
namespace Ui {

class Control;

namespace Animations {

/// Is told of a control animator's progress. The phone animates nothing by itself, so none of these is ever called.
class IControlAnimatorDetailedEventListener : virtual public Tizen::Base::Runtime::IEventListener {
public:
    virtual void OnControlAnimationStarted(const Control& source) = 0;
    virtual void OnControlAnimationRepeated(const Control& source, long currentRepeatCount) = 0;
    virtual void OnControlAnimationFinished(const Control& source) = 0;
    virtual void OnControlAnimationStopped(const Control& source) = 0;
};

}  // namespace Animations
}  // namespace Ui
}  // namespace Tizen
