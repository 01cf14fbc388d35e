#pragma once

#include "Tizen/Base/Runtime/IEventListener.h"

namespace Tizen {
namespace Base {
namespace Runtime {

class Timer;

/// Is told when a timer has expired.
class ITimerEventListener : virtual public IEventListener {
public:
    /// On the UI thread. The handler may start the timer again, or destroy it.
    virtual void OnTimerExpired(Timer& timer) = 0;
};

}  // namespace Runtime
}  // namespace Base
}  // namespace Tizen
