#include "Tizen/Base/Runtime/Timer.h"

#include <string_view>

#include "runtime/Runtime.h"

namespace Tizen {
namespace Base {
namespace Runtime {

namespace {

void TraceTimer(std::string_view event, int interval) {
    host::Trace& trace = host::Runtime::Current().GetTrace();
    if (trace.HasTimers()) trace.Add("timer", event).Number("interval", interval);
}

}  // namespace

Timer::~Timer() {
    Cancel();
}

result Timer::Construct(ITimerEventListener& listener) {
    if (pListener_ != nullptr) return E_INVALID_STATE;
    pListener_ = &listener;
    return E_SUCCESS;
}

result Timer::Start(int milliseconds) {
    if (milliseconds <= 0) return E_INVALID_ARG;
    if (pListener_ == nullptr) return E_INVALID_STATE;
    Cancel();
    interval_ = milliseconds;
    id_ = host::Runtime::Current().GetLoop().StartTick(milliseconds * host::kMicrosecondsPerMillisecond,
                                                       [this] { Expire(); });
    TraceTimer("started", interval_);
    return E_SUCCESS;
}

result Timer::Cancel() {
    if (id_ == host::TimerQueue::kNone) return E_SUCCESS;
    host::Runtime::Current().GetLoop().CancelTimer(id_);
    id_ = host::TimerQueue::kNone;
    return E_SUCCESS;
}

void Timer::Expire() {
    id_ = host::TimerQueue::kNone;
    TraceTimer("expired", interval_);
    // The last thing done: the handler may destroy this timer.
    pListener_->OnTimerExpired(*this);
}

}  // namespace Runtime
}  // namespace Base
}  // namespace Tizen
