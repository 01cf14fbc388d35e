#pragma once

#include <csignal>

#include <array>
#include <atomic>
#include <cstdint>

#include "backend/desktop/waiting/DisplayWait.h"

namespace host {

/// While it lives, the signals that ask a program to end (Ctrl-C, kill, a closed terminal) do not end it in the middle
/// of a note: they are kept for the loop to find. Those that come within a second of the first are the same wish: a
/// service manager or `timeout` sends more than one. A later one kills a program that hangs. One at a time, UI thread.
class EndSignals {
public:
    explicit EndSignals(DisplayWait& wait);
    ~EndSignals();
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;

    /// Whether one has come since the last call.
    [[nodiscard]] bool TakeArrival() noexcept { return hasArrived_.exchange(false, std::memory_order_acquire); }

private:
    static constexpr std::array<int, 3> kSignals = {SIGINT, SIGTERM, SIGHUP};

    static constexpr std::int64_t kSameWish = 1'000'000'000;  // nanoseconds
    static constexpr std::int64_t kNever = INT64_MIN;

    static void Handle(int signal) noexcept;
    void OnSignal(int signal) noexcept;

    static std::atomic<EndSignals*> current_;

    DisplayWait& wait_;
    std::atomic<bool> hasArrived_{false};
    std::atomic<std::int64_t> firstArrival_{kNever};  ///< of the monotonic clock, nanoseconds
    std::array<struct sigaction, kSignals.size()> before_{};
};

}  // namespace host
