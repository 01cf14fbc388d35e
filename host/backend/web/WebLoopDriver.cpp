#include "backend/web/WebLoopDriver.h"

#include <algorithm>

#include "backend/web/Bridge.h"

namespace host {

void WebLoopDriver::Run(LoopClient& client) {
    client_ = &client;
    // The start has taken long; between it and the first step the browser sees to what has come meanwhile.
    web_loop_schedule(0);
}

void WebLoopDriver::Wake() noexcept {
    if (client_ == nullptr) return;
    isWoken_ = true;
    if (!isStepping_ && !isStepComing_) web_loop_schedule(0);
}

void WebLoopDriver::Step() {
    constexpr double kNeverAgain = -1;
    isStepComing_ = false;
    if (client_ == nullptr || isStepping_ || client_->HasEnded()) return;
    isStepping_ = true;
    isWoken_ = false;
    const Microseconds due = client_->RunStep(clock_.Now());
    isStepping_ = false;
    if (client_->HasEnded() || (due == LoopClient::kNever && !isWoken_)) {
        web_loop_schedule(kNeverAgain);
        return;
    }
    const Microseconds wait = isWoken_ ? 0 : std::max<Microseconds>(0, due - clock_.Now());
    web_loop_schedule(static_cast<double>(wait) / kMicrosecondsPerMillisecond);
}

}  // namespace host
