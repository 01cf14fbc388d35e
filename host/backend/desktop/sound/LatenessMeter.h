#pragma once

#include <atomic>
#include <cstdint>

#include "backend/Clock.h"

namespace host {

/// Guesses from the times at which a sound device asks for periods how many of them came too late to be heard in time:
/// SDL does not tell. It runs on the device's thread; any thread may ask for the count.
class LatenessMeter {
public:
    /// Forgets the rhythm, not the count. Not while a device runs.
    void Restart() noexcept { hasStarted_ = false; }

    /// A period of `length` is asked for at `now`.
    void OnPeriod(Microseconds now, Microseconds length) noexcept {
        if (!hasStarted_) {
            hasStarted_ = true;
            expected_ = now;
        }
        const Microseconds late = now - expected_;
        if (late > length * kPeriodsInStock) {
            count_.fetch_add(1, std::memory_order_relaxed);
            expected_ = now + length;
        } else {
            // The device's clock is not ours: the rhythm follows it slowly.
            expected_ += length + late / kFollowing;
        }
    }

    [[nodiscard]] std::uint64_t Count() const noexcept { return count_.load(std::memory_order_relaxed); }

private:
    static constexpr Microseconds kPeriodsInStock = 2;  // What SDL's devices hold while they ask for the next one.
    static constexpr Microseconds kFollowing = 64;      // The part of a lateness that is taken for the device's clock.

    bool hasStarted_ = false;
    Microseconds expected_ = 0;
    std::atomic<std::uint64_t> count_{0};
};

}  // namespace host
