#pragma once

#include <atomic>
#include <span>

#include "backend/Speaker.h"
#include "runtime/Console.h"
#include "runtime/loop/EventLoop.h"
#include "runtime/sound/MixDesk.h"
#include "runtime/sound/OutputTap.h"
#include "runtime/sound/SoundWatcher.h"

namespace host {

/// Hears from the speaker: brings its news to the desk, a lost device to the console and the watcher, and what is
/// played to the recordings' taps.
class SpeakerOutput final : public SpeakerClient {
public:
    SpeakerOutput(MixDesk& desk, EventLoop& loop, Console& console)
        : desk_(desk), console_(console), news_(loop, [this] { desk_.TakeNews(); }) {}

    /// Before the speaker is opened. Not owned; null for none.
    void SetTap(OutputTap* tap) noexcept { tap_ = tap; }
    /// At any time. Not owned, and in use until the speaker is closed; null for none.
    void SetTakeTap(OutputTap* tap) noexcept { takeTap_ = tap; }

    /// Null for none. It must outlive this, or be taken back.
    void SetWatcher(SoundWatcher* watcher) noexcept { watcher_ = watcher; }

    /// The speaker has been opened: what it has lost by now was never there.
    void EndOpening() noexcept { wasThere_ = !isDeviceLost_; }

    /// As if the device were gone; the mix goes on in time.
    void SetSimulatedLoss(bool isLost);

    // SpeakerClient
    void OnSpeakerNews() noexcept override;
    void OnSpeakerLost() noexcept override;
    void OnSpeakerRestored() noexcept override;
    void OnFramesPlayed(std::span<const float> frames) noexcept override;

private:
    /// Tells of a device that is lost, or back, once.
    void Tell();

    MixDesk& desk_;
    Console& console_;
    SoundWatcher* watcher_ = nullptr;
    OutputTap* tap_ = nullptr;
    std::atomic<OutputTap*> takeTap_ = nullptr;
    bool wasThere_ = false;  ///< a device, at any time
    bool isDeviceLost_ = false;
    bool isLossSimulated_ = false;
    bool isLossTold_ = false;
    ThreadSignal news_;
};

}  // namespace host
