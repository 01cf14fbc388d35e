#include "backend/desktop/waiting/SdlWait.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace host {

void SdlWait::SleepUntil(Microseconds due) {
    constexpr Microseconds kLongestWait = 60 * kMicrosecondsPerSecond;
    for (;;) {
        const Microseconds rest = std::min(due - clock_.Now(), kLongestWait);
        if (rest <= 0) return;
        // SDL waits in whole milliseconds. The remaining fraction of one is slept: an event can wait that long, but
        // timers that are late by it each time would drift.
        if (rest < kMicrosecondsPerMillisecond) {
            std::this_thread::sleep_for(std::chrono::microseconds(rest));
            return;
        }
        if (SDL_WaitEventTimeout(nullptr, static_cast<int>(rest / kMicrosecondsPerMillisecond)) != 0) return;
    }
}

}  // namespace host
