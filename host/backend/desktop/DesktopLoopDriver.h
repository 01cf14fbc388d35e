#pragma once

#include <atomic>

#include "backend/LoopDriver.h"
#include "backend/desktop/DesktopMicrophone.h"
#include "backend/desktop/DesktopSpeaker.h"
#include "backend/desktop/DesktopWindow.h"
#include "backend/desktop/WakeThread.h"

namespace host {

/// Waits for the desktop's events and for what is due, and hands both on, on the UI thread.
class DesktopLoopDriver final : public LoopDriver {
public:
    DesktopLoopDriver(const Clock& clock, DesktopWindow& window, DesktopSpeaker& speaker, DesktopMicrophone& microphone)
        : clock_(clock), window_(window), speaker_(speaker), microphone_(microphone) {}

    void Run(LoopClient& client) override;
    void Wake() noexcept override;

private:
    void HandleEvents();
    /// Returns at `due`, and earlier when an event has come or somebody wakes.
    void WaitUntil(Microseconds due);

    const Clock& clock_;
    DesktopWindow& window_;
    DesktopSpeaker& speaker_;
    DesktopMicrophone& microphone_;
    WakeThread wakeThread_;
    /// Set from a wake to the step that answers it, so that a burst of wakes makes one event.
    std::atomic<bool> isWoken_{false};
};

}  // namespace host
