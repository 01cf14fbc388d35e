#include "backend/desktop/SdlWait.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace host {

void SdlWait::SleepUntil(Microseconds due) {
    constexpr Microseconds kLongestWait = 60 * kMicrosecondsPerSecond;
    for (;;) {
        const Microseconds rest = std::min(due - clock_.Now(), kLongestWait);
        if (rest <= 0) return;
        // SDL waits in milliseconds. The part of one that is left is slept: an event can wait that long, and a timer
        // that is late by it every time would be out of step.
        if (rest < kMicrosecondsPerMillisecond) {
            std::this_thread::sleep_for(std::chrono::microseconds(rest));
            return;
        }
        if (SDL_WaitEventTimeout(nullptr, static_cast<int>(rest / kMicrosecondsPerMillisecond)) != 0) return;
    }
}

}  // namespace host
