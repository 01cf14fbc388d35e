#pragma once

#include <atomic>
#include <span>

#include "backend/Speaker.h"
#include "runtime/Console.h"
#include "runtime/loop/EventLoop.h"
#include "runtime/sound/Mix.h"
#include "runtime/sound/MixDesk.h"
#include "runtime/sound/OutputTap.h"

namespace host {

/// What the speaker pulls from: the mix, silenced while the speaker is lost, then the recording's tap. Its news for the
/// UI thread are mere wake-ups; what happened stands in atomics, so that none is lost in a full queue.
class SpeakerOutput final : public SpeakerClient, private ThreadMessageHandler {
public:
    SpeakerOutput(Mix& mix, MixDesk& desk, EventLoop& loop, Console& console)
        : mix_(mix), desk_(desk), loop_(loop), console_(console) {}

    /// Before the speaker is opened. Not owned; null for none.
    void SetTap(OutputTap* tap) noexcept { tap_ = tap; }

    /// UI thread: as if the device were gone; the mix goes on in time.
    void SetSimulatedLoss(bool isLost);

    // SpeakerClient, on the audio thread.
    void Pull(std::span<float> frames) noexcept override;
    void OnSpeakerLost() noexcept override;
    void OnSpeakerRestored() noexcept override;

private:
    void OnThreadMessage(const ThreadMessage& message) override;
    void TellConsole();
    void Tell() noexcept;

    Mix& mix_;
    MixDesk& desk_;
    EventLoop& loop_;
    Console& console_;
    OutputTap* tap_ = nullptr;
    bool wasLost_ = false;                    ///< UI thread: what the console said last
    std::atomic<bool> hasUntoldNews_{false};  ///< the last wake-up found the queue full
    std::atomic<bool> isDeviceLost_{false};
    std::atomic<bool> isLossSimulated_{false};
};

}  // namespace host
