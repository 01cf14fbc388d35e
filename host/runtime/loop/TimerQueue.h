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

    Id Start(Microseconds due, std::function<void()> fire);
    /// A timer that has fired or was never started is passed over.
    void Cancel(Id id);

    /// Fires the first timer that is due at `now`; false when none is.
    bool FireFirstExpired(Microseconds now);
    /// LoopClient::kNever when no timer runs.
    [[nodiscard]] Microseconds NextDue() const;

private:
    using Key = std::pair<Microseconds, Id>;

    std::map<Key, std::function<void()>> timers_;
    std::map<Id, Microseconds> dues_;
    Id lastId_ = kNone;
};

}  // namespace host
