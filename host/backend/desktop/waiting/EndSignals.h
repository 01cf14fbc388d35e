#pragma once

#include <csignal>

#include <array>
#include <atomic>

#include "backend/desktop/waiting/DisplayWait.h"

namespace host {

/// While it lives, the signals that ask a program to end (Ctrl-C, kill, a closed terminal) do not end it in the middle
/// of a note: they are kept for the loop to find. Each is caught once; the second kills a program that hangs. One at a
/// time, UI thread.
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

    static void Handle(int signal) noexcept;

    static std::atomic<EndSignals*> current_;

    DisplayWait& wait_;
    std::atomic<bool> hasArrived_{false};
    std::array<struct sigaction, kSignals.size()> before_{};
};

}  // namespace host
