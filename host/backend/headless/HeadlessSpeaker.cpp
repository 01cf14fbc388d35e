#include "backend/headless/HeadlessSpeaker.h"

#include "backend/LoopDriver.h"

namespace host {

void HeadlessSpeaker::Open(SpeakerClient& client) {
    StartMix(client, kRate, kPeriodFrames);
    openedAt_ = clock_.Now();
    periodsPulled_ = 0;
}

Microseconds HeadlessSpeaker::NextPeriod() const noexcept {
    if (!IsMixing()) return LoopClient::kNever;
    // From the number of the period, so that rounding does not add up; rounded up, so that no period comes early.
    const std::int64_t framesPulled = periodsPulled_ * kPeriodFrames;
    return openedAt_ + (framesPulled * kMicrosecondsPerSecond + kRate - 1) / kRate;
}

void HeadlessSpeaker::PullPeriod() noexcept {
    if (!IsMixing()) return;
    ++periodsPulled_;
    Pull(frames_);
}

}  // namespace host
