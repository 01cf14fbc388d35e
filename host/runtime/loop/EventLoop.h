#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <vector>

#include "backend/Clock.h"
#include "backend/LoopDriver.h"
#include "runtime/loop/ThreadSignal.h"
#include "runtime/loop/TimerQueue.h"

namespace host {

/// Timers, posted events and news from other threads, one after another on the UI thread. Nothing nests: an event that
/// a handler posts runs after that handler has returned.
class EventLoop {
public:
    EventLoop(const Clock& clock, LoopDriver& driver) : clock_(clock), driver_(driver), now_(clock.Now()) {}

    /// The time of the current step. It stands still within a step, so that timers that expire together and are started
    /// again in their handlers go on expiring together.
    [[nodiscard]] Microseconds Now() const noexcept { return now_; }

    TimerQueue::Id StartTimer(Microseconds interval, std::function<void()> fire) {
        return timers_.Start(now_ + interval, std::move(fire));
    }
    /// As StartTimer, but within the driver's slack it waits for the timer that expires next. So ticks of the same
    /// interval come together, and wake the machine once for all of them.
    TimerQueue::Id StartTick(Microseconds interval, std::function<void()> fire) {
        return timers_.Start(now_ + interval, std::move(fire), driver_.TimerSlack());
    }
    void CancelTimer(TimerQueue::Id id) { timers_.Cancel(id); }

    /// Runs `event` later; when `receiver` has expired by then, `dropped` runs instead (if it is set). UI thread only;
    /// other threads have a ThreadSignal.
    void PostTo(std::weak_ptr<const void> receiver, std::function<void()> event, std::function<void()> dropped = {});

    /// Everything that is due at `now`: raised signals, then posted events before timers, in their order.
    /// Returns early once `isEnding` has become true.
    void RunDue(Microseconds now, const bool& isEnding);
    /// As RunDue, but without the timers: what must be delivered before an input that comes in between.
    void RunPosted();
    /// LoopClient::kNever when nothing is waiting.
    [[nodiscard]] Microseconds NextDue() const;
    /// Called before input that arrives between two steps is delivered: advances the time to the input's, and delivers
    /// what was posted before it.
    void BeginInput();

    /// Drops all that is queued and cancels every timer, unfired.
    void Clear();

private:
    friend class ThreadSignal;

    void HandleSignals();
    void SetNow(Microseconds now) noexcept { now_ = now > now_ ? now : now_; }

    const Clock& clock_;
    LoopDriver& driver_;
    Microseconds now_;
    TimerQueue timers_;
    std::deque<std::function<void()>> posted_;
    std::vector<ThreadSignal*> signals_;
};

}  // namespace host
