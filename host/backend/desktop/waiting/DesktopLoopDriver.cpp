#include "backend/desktop/waiting/DesktopLoopDriver.h"

#include <algorithm>
#include <array>

#include "backend/desktop/waiting/SdlWait.h"
#include "backend/desktop/waiting/X11Wait.h"

namespace host {

DesktopLoopDriver::DesktopLoopDriver(const Clock& clock, DesktopWindow& window, DesktopSpeaker& speaker,
                                     DesktopMicrophone& microphone)
    : clock_(clock),
      window_(window),
      speaker_(speaker),
      microphone_(microphone),
      wait_(X11Wait::Create(clock, window)) {
    if (!wait_) wait_ = std::make_unique<SdlWait>(clock);
}

void DesktopLoopDriver::Run(LoopClient& client) {
    // Kept beyond this run: the program is still closing its files then.
    endSignals_.emplace(*wait_);
    while (!client.HasEnded()) {
        HandleEvents();
        if (endSignals_->TakeArrival()) window_.RequestClose();
        const Microseconds tendDue =
            std::min(speaker_.Keeper().Tend(clock_.Now()), microphone_.Keeper().Tend(clock_.Now()));
        if (client.HasEnded()) return;
        // Taken before the step: what is told during it, or after it, wakes again.
        isWoken_.exchange(false, std::memory_order_acq_rel);
        const Microseconds due = client.RunStep(clock_.Now());
        if (client.HasEnded()) return;
        wait_->SleepUntil(std::min(due, tendDue));
    }
}

void DesktopLoopDriver::Wake() noexcept {
    if (!isWoken_.exchange(true, std::memory_order_acq_rel)) wait_->Wake();
}

void DesktopLoopDriver::HandleEvents() {
    wait_->Collect();
    constexpr int kAtOnce = 32;
    std::array<SDL_Event, kAtOnce> events;
    int count = 0;
    while ((count = SDL_PeepEvents(events.data(), kAtOnce, SDL_GETEVENT, SDL_FIRSTEVENT, SDL_LASTEVENT)) > 0) {
        for (int i = 0; i < count; ++i) {
            const SDL_Event& event = events[static_cast<std::size_t>(i)];
            if (event.type == SDL_AUDIODEVICEADDED) {
                if (event.adevice.iscapture != 0) {
                    microphone_.Keeper().OnDeviceAdded();
                } else {
                    speaker_.Keeper().OnDeviceAdded();
                }
            } else {
                window_.HandleEvent(event);
            }
        }
    }
    window_.FinishEvents();
}

}  // namespace host
