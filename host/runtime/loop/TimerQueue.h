#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <utility>

#include "backend/Clock.h"

namespace host {

/// One-shot timers in the order of their due times, and of their starts where those are equal. UI thread only; time is
/// handed in.
class TimerQueue {
public:
    using Id = std::uint64_t;
    static constexpr Id kNone = 0;

    /// With `slack` the timer may come so much later, and does where others are due by then.
    Id Start(Microseconds due, std::function<void()> fire, Microseconds slack = 0);
    /// A timer that has fired or was never started is passed over.
    void Cancel(Id id);

    /// Fires the first timer that is due at `now`, whatever its slack; false when none is.
    bool FireFirstDue(Microseconds now);
    /// When all that is due is best fired: as late as the slacks allow for the last timer that is due by then.
    /// LoopClient::kNever when no timer runs.
    [[nodiscard]] Microseconds NextExpiry() const;

private:
    using Key = std::pair<Microseconds, Id>;
    struct Timer {
        std::function<void()> fire;
        Microseconds slack;
    };

    std::map<Key, Timer> timers_;
    std::map<Id, Microseconds> dues_;
    Id lastId_ = kNone;
};

}  // namespace host
