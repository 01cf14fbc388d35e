#pragma once

#include <cstdint>

#include "Tizen/Base/Object.h"
#include "Tizen/Base/Runtime/ITimerEventListener.h"

namespace Tizen {
namespace Base {
namespace Runtime {

/// A one-shot timer of the UI thread. Its end cancels it: nothing expires for a timer that no longer exists.
class Timer : public Object {
public:
    Timer() = default;
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;
    ~Timer() override;

    /// The listener must live as long as the timer. E_INVALID_STATE the second time.
    result Construct(ITimerEventListener& listener);
    /// Expires once after `milliseconds`; a timer that is running starts anew. E_INVALID_ARG unless positive (an
    /// interval of 0 that starts itself again would leave no time for anything else), E_INVALID_STATE before Construct.
    result Start(int milliseconds);
    /// A timer that is not running is left alone.
    result Cancel();

private:
    void Expire();

    ITimerEventListener* pListener_ = nullptr;
    std::uint64_t id_ = 0;
    int interval_ = 0;
};

}  // namespace Runtime
}  // namespace Base
}  // namespace Tizen
