#include "backend/desktop/DesktopLoopDriver.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <thread>

#include "backend/desktop/EndSignals.h"

namespace host {

void DesktopLoopDriver::Run(LoopClient& client) {
    EndSignals endSignals(wakeThread_);
    while (!client.HasEnded()) {
        HandleEvents();
        if (endSignals.TakeArrival()) window_.RequestClose();
        const Microseconds tendDue = std::min(speaker_.Tend(clock_.Now()), microphone_.Tend(clock_.Now()));
        if (client.HasEnded()) return;
        // Taken before the step: what is told during it, or after it, wakes again.
        isWoken_.exchange(false, std::memory_order_acq_rel);
        const Microseconds due = client.RunStep(clock_.Now());
        if (client.HasEnded()) return;
        WaitUntil(std::min(due, tendDue));
    }
}

void DesktopLoopDriver::Wake() noexcept {
    if (!isWoken_.exchange(true, std::memory_order_acq_rel)) wakeThread_.Wake();
}

void DesktopLoopDriver::HandleEvents() {
    SDL_PumpEvents();
    constexpr int kAtOnce = 32;
    std::array<SDL_Event, kAtOnce> events;
    int count = 0;
    while ((count = SDL_PeepEvents(events.data(), kAtOnce, SDL_GETEVENT, SDL_FIRSTEVENT, SDL_LASTEVENT)) > 0) {
        for (int i = 0; i < count; ++i) {
            const SDL_Event& event = events[static_cast<std::size_t>(i)];
            if (event.type == SDL_AUDIODEVICEADDED) {
                if (event.adevice.iscapture != 0) {
                    microphone_.OnDeviceAdded();
                } else {
                    speaker_.OnDeviceAdded();
                }
            } else {
                window_.HandleEvent(event);
            }
        }
    }
    window_.FinishEvents();
}

void DesktopLoopDriver::WaitUntil(Microseconds due) {
    constexpr Microseconds kLongestWait = 60 * kMicrosecondsPerSecond;
    while (!isWoken_.load(std::memory_order_acquire)) {
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
