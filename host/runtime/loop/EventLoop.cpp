#include "runtime/loop/EventLoop.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace host {

ThreadSignal::ThreadSignal(EventLoop& loop, std::function<void()> handler) : loop_(loop), handler_(std::move(handler)) {
    loop_.signals_.push_back(this);
}

ThreadSignal::~ThreadSignal() {
    auto& signals = loop_.signals_;
    signals.erase(std::remove(signals.begin(), signals.end(), this), signals.end());
}

void ThreadSignal::Raise() noexcept {
    // One that was raised already has woken the loop.
    if (!isRaised_.exchange(true, std::memory_order_acq_rel)) loop_.driver_.Wake();
}

void EventLoop::PostTo(std::weak_ptr<const void> receiver, std::function<void()> event, std::function<void()> dropped) {
    posted_.push_back([receiver = std::move(receiver), event = std::move(event), dropped = std::move(dropped)] {
        if (!receiver.expired()) {
            event();
        } else if (dropped) {
            dropped();
        }
    });
}

void EventLoop::RunDue(Microseconds now, const bool& isEnding) {
    SetNow(now);
    bool isTimersTime = false;
    do {
        RunPosted();
        // Asked until it is once: from then on all that is due comes in this step, whatever else comes soon.
        isTimersTime = isTimersTime || timers_.NextExpiry() <= now_;
    } while (!isEnding && isTimersTime && timers_.FireFirstDue(now_));
}

void EventLoop::BeginInput() {
    SetNow(clock_.Now());
    RunPosted();
}

void EventLoop::RunPosted() {
    HandleSignals();
    while (!posted_.empty()) {
        const auto event = std::move(posted_.front());
        posted_.pop_front();
        event();
        HandleSignals();
    }
}

Microseconds EventLoop::NextDue() const {
    return posted_.empty() ? timers_.NextExpiry() : now_;
}

void EventLoop::Clear() {
    posted_.clear();
    timers_ = TimerQueue();
    for (ThreadSignal* signal : signals_) signal->isRaised_.store(false, std::memory_order_relaxed);
}

void EventLoop::HandleSignals() {
    // By index, as a handler may make signals or destroy them.
    for (std::size_t i = 0; i < signals_.size(); ++i) {
        ThreadSignal& signal = *signals_[i];
        // Taken back first, so that news that comes meanwhile raises it again.
        if (signal.isRaised_.exchange(false, std::memory_order_acq_rel)) signal.handler_();
    }
}

}  // namespace host
