#include "runtime/sound/SpeakerOutput.h"

#include <utility>

namespace host {

void SpeakerOutput::SetSimulatedLoss(bool isLost) {
    isLossSimulated_ = isLost;
    desk_.SetOutput(isLost ? MixDesk::Output::kMuted : MixDesk::Output::kHeard);
    TellConsole();
}

void SpeakerOutput::OnSpeakerNews() noexcept {
    news_.Raise();
}

void SpeakerOutput::OnSpeakerLost() noexcept {
    isDeviceLost_ = true;
    TellConsole();
}

void SpeakerOutput::OnSpeakerRestored() noexcept {
    isDeviceLost_ = false;
    TellConsole();
}

void SpeakerOutput::OnFramesPlayed(std::span<const float> frames) noexcept {
    if (tap_ != nullptr) tap_->Push(frames);
}

void SpeakerOutput::TellConsole() {
    const bool isLost = isDeviceLost_ || isLossSimulated_;
    if (std::exchange(isLossTold_, isLost) == isLost) return;
    console_.SayOnce(isLost ? "the sound output is gone; playing goes on when it is back" : "the sound output is back");
}

}  // namespace host
