#pragma once

#include <atomic>

#include "backend/LoopDriver.h"
#include "backend/headless/HeadlessSpeaker.h"
#include "backend/headless/VirtualClock.h"

namespace host {

/// Runs step after step without ever waiting: between two steps the clock jumps to the next thing that is due.
class HeadlessLoopDriver final : public LoopDriver {
public:
    HeadlessLoopDriver(VirtualClock& clock, HeadlessSpeaker& speaker) : clock_(clock), speaker_(speaker) {}

    /// Also returns when nothing is due any more, ever: no time would pass then and nothing could end the client.
    void Run(LoopClient& client) override;
    void Wake() noexcept override { isWoken_.store(true, std::memory_order_release); }

private:
    VirtualClock& clock_;
    HeadlessSpeaker& speaker_;
    std::atomic<bool> isWoken_{false};
};

}  // namespace host
