#pragma once

#include <atomic>
#include <memory>
#include <optional>

#include "backend/LoopDriver.h"
#include "backend/desktop/sound/DesktopMicrophone.h"
#include "backend/desktop/sound/DesktopSpeaker.h"
#include "backend/desktop/waiting/DisplayWait.h"
#include "backend/desktop/waiting/EndSignals.h"
#include "backend/desktop/window/DesktopWindow.h"

namespace host {

/// Waits for the desktop's events and for what is due, and hands both on, on the UI thread.
class DesktopLoopDriver final : public LoopDriver {
public:
    /// To be made when the display is connected, if there is one: how to wait depends on its kind.
    DesktopLoopDriver(const Clock& clock, DesktopWindow& window, DesktopSpeaker& speaker,
                      DesktopMicrophone& microphone);

    void Run(LoopClient& client) override;
    void Wake() noexcept override;
    [[nodiscard]] Microseconds TimerSlack() const noexcept override { return kHalfTick; }

private:
    void HandleEvents();

    const Clock& clock_;
    DesktopWindow& window_;
    DesktopSpeaker& speaker_;
    DesktopMicrophone& microphone_;
    std::unique_ptr<DisplayWait> wait_;
    std::optional<EndSignals> endSignals_;  ///< from the first run on
    /// Set from a wake to the step that answers it, so that a burst of wakes makes one.
    std::atomic<bool> isWoken_{false};
};

}  // namespace host
