#include "backend/headless/HeadlessSpeaker.h"

#include "backend/LoopDriver.h"

namespace host {

void HeadlessSpeaker::Open(SpeakerClient& client) {
    client_ = &client;
    openedAt_ = clock_.Now();
    periodsPulled_ = 0;
}

Microseconds HeadlessSpeaker::NextPeriod() const noexcept {
    if (client_ == nullptr) return LoopClient::kNever;
    // From the number of the period, so that rounding does not add up; rounded up, so that no period comes early.
    const std::int64_t framesPulled = periodsPulled_ * kPeriodFrames;
    return openedAt_ + (framesPulled * kMicrosecondsPerSecond + kRate - 1) / kRate;
}

void HeadlessSpeaker::PullPeriod() noexcept {
    if (client_ == nullptr) return;
    ++periodsPulled_;
    client_->Pull(frames_);
}

}  // namespace host
