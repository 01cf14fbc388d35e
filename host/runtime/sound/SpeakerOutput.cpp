#include "runtime/sound/SpeakerOutput.h"

#include <algorithm>

namespace host {

void SpeakerOutput::SetSimulatedLoss(bool isLost) {
    isLossSimulated_.store(isLost, std::memory_order_relaxed);
    TellConsole();
}

void SpeakerOutput::Pull(std::span<float> frames) noexcept {
    if (mix_.Render(frames) == Mix::News::kSome || hasUntoldNews_.load(std::memory_order_relaxed)) Tell();
    if (isDeviceLost_.load(std::memory_order_relaxed) || isLossSimulated_.load(std::memory_order_relaxed)) {
        std::fill(frames.begin(), frames.end(), 0.0F);
    }
    if (tap_ != nullptr) tap_->Push(frames);
}

void SpeakerOutput::OnSpeakerLost() noexcept {
    isDeviceLost_.store(true, std::memory_order_relaxed);
    Tell();
}

void SpeakerOutput::OnSpeakerRestored() noexcept {
    isDeviceLost_.store(false, std::memory_order_relaxed);
    Tell();
}

void SpeakerOutput::Tell() noexcept {
    hasUntoldNews_.store(!loop_.PostFromThread({this}), std::memory_order_relaxed);
}

void SpeakerOutput::OnThreadMessage(const ThreadMessage&) {
    TellConsole();
    desk_.TakeNews();
}

void SpeakerOutput::TellConsole() {
    const bool isLost =
        isDeviceLost_.load(std::memory_order_relaxed) || isLossSimulated_.load(std::memory_order_relaxed);
    if (isLost == wasLost_) return;
    wasLost_ = isLost;
    console_.SayOnce(isLost ? "the sound output is gone; playing goes on when it is back" : "the sound output is back");
}

}  // namespace host
