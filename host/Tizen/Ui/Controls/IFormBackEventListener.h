#pragma once

#include "Tizen/Base/Runtime/IEventListener.h"

namespace Tizen {
namespace Ui {
namespace Controls {

class Form;

/// Is told when the Back key was released while the form is the topmost screen. UI thread.
class IFormBackEventListener : virtual public Tizen::Base::Runtime::IEventListener {
public:
    virtual void OnFormBackRequested(Form& source) = 0;
};

}  // namespace Controls
}  // namespace Ui
}  // namespace Tizen
