#pragma once

#include "backend/Clock.h"

namespace host {

/// What a loop driver runs: one step of the program after another.
class LoopClient {
public:
    /// Does everything that is due at `now`. Returns when it next has something to do, or kNever.
    virtual Microseconds RunStep(Microseconds now) = 0;
    /// True once the program has ended; no further step is wanted then.
    [[nodiscard]] virtual bool HasEnded() const = 0;

    static constexpr Microseconds kNever = INT64_MAX;

protected:
    ~LoopClient() = default;
};

/// Runs a client's steps on the UI thread and waits in between. Input of the window reaches its listener from in here,
/// and a step follows it at once: what the input asked for may be due.
class LoopDriver {
public:
    virtual ~LoopDriver() = default;

    /// Runs steps until the client has ended. A back end whose surroundings own the thread (a browser) may return
    /// before that and go on by itself; the client then ends inside a later step.
    virtual void Run(LoopClient& client) = 0;

    /// Makes a waiting driver run a step soon. Any thread, the audio thread included: neither blocks nor allocates.
    virtual void Wake() noexcept = 0;

    /// By how much a timer that need not be exact may come late, so as to come with another one. 0 where a step costs
    /// nobody any rest.
    [[nodiscard]] virtual Microseconds TimerSlack() const noexcept { return 0; }

protected:
    /// Half of the ocarina's tick: of any two of its ticks one comes so soon after the other.
    static constexpr Microseconds kHalfTick = 15'000;
};

}  // namespace host
