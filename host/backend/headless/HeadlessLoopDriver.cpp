#include "backend/headless/HeadlessLoopDriver.h"

#include <algorithm>

namespace host {

void HeadlessLoopDriver::Run(LoopClient& client) {
    while (!client.HasEnded()) {
        isWoken_.store(false, std::memory_order_relaxed);
        const Microseconds due = client.RunStep(clock_.Now());
        if (client.HasEnded()) return;
        // What a step does at a time is heard in the period of that time, hence the step before the pull.
        if (speaker_.NextPeriod() <= clock_.Now()) speaker_.PullPeriod();
        if (isWoken_.load(std::memory_order_acquire)) continue;
        const Microseconds next = std::min(due, speaker_.NextPeriod());
        if (next == LoopClient::kNever) return;
        clock_.AdvanceTo(next);
    }
}

}  // namespace host
