#include "runtime/sound/SpeakerOutput.h"

#include <utility>

namespace host {

void SpeakerOutput::SetSimulatedLoss(bool isLost) {
    isLossSimulated_ = isLost;
    desk_.SetOutput(isLost ? MixDesk::Output::kMuted : MixDesk::Output::kHeard);
    Tell();
}

void SpeakerOutput::OnSpeakerNews() noexcept {
    news_.Raise();
}

void SpeakerOutput::OnSpeakerLost() noexcept {
    isDeviceLost_ = true;
    Tell();
}

void SpeakerOutput::OnSpeakerRestored() noexcept {
    isDeviceLost_ = false;
    Tell();
}

void SpeakerOutput::OnFramesPlayed(std::span<const float> frames) noexcept {
    if (tap_ != nullptr) tap_->Push(frames);
    if (OutputTap* const takeTap = takeTap_) takeTap->Push(frames);
}

void SpeakerOutput::Tell() {
    const bool isLost = isDeviceLost_ || isLossSimulated_;
    if (std::exchange(isLossTold_, isLost) == isLost) return;
    if (watcher_ != nullptr && isLost) watcher_->OnSpeakerGone();
    if (watcher_ != nullptr && !isLost) watcher_->OnSpeakerGoneNoMore();
    if (isLost) {
        console_.SayOnce(wasThere_ ? "the sound output is gone; playing goes on when it is back"
                                   : "there is no sound output; playing is heard when there is one");
    } else {
        console_.SayOnce(std::exchange(wasThere_, true) ? "the sound output is back" : "there is a sound output now");
    }
}

}  // namespace host
