#include "runtime/sound/SimulatedMicrophone.h"

#include <algorithm>
#include <utility>

namespace host {

SimulatedMicrophone::~SimulatedMicrophone() {
    Stop();
}

void SimulatedMicrophone::SetBreath(double level) {
    HearUntil(loop_.Now());
    turbulence_.SetLevel(level);
    peak_.reset();
}

void SimulatedMicrophone::SetPeak(std::uint8_t peak) {
    HearUntil(loop_.Now());
    peak_ = peak;
}

void SimulatedMicrophone::Lose() {
    HearUntil(loop_.Now());
    if (std::exchange(isLost_, true) || sink_ == nullptr) return;
    sink_->OnSourceLost();
}

void SimulatedMicrophone::Restore() {
    HearUntil(loop_.Now());
    if (!std::exchange(isLost_, false) || sink_ == nullptr) return;
    sink_->OnSourceRestored();
}

void SimulatedMicrophone::Start(BlockSink& sink) {
    Stop();
    sink_ = &sink;
    start_ = loop_.Now();
    if (firstStart_ < 0) firstStart_ = start_;
    blocks_ = 0;
    framesHeard_ = 0;
    if (breathFile_ != nullptr) {
        const auto frames = static_cast<std::uint64_t>((start_ - firstStart_) / kPhoneFrameTime);
        breathFile_->Skip(frames - std::min(frames, fileFrames_));
        fileFrames_ = std::max(frames, fileFrames_);
    }
    if (isLost_) sink_->OnSourceLost();
    WaitForBlock();
}

void SimulatedMicrophone::Stop() noexcept {
    loop_.CancelTimer(timer_);
    timer_ = TimerQueue::kNone;
    sink_ = nullptr;
}

Microseconds SimulatedMicrophone::BlockEnd() const {
    return start_ + (blocks_ + 1) * kBlockTime;
}

void SimulatedMicrophone::WaitForBlock() {
    timer_ = loop_.StartTimer(BlockEnd() - loop_.Now(), [this] {
        HearUntil(loop_.Now());
        WaitForBlock();
    });
}

void SimulatedMicrophone::HearUntil(Microseconds now) {
    if (sink_ == nullptr) return;
    // More than one block is due only where the loop is late: the sink sees to it that the oldest ones go.
    while (now >= BlockEnd()) {
        Hear(kBlockFrames - framesHeard_);
        if (peak_ && !isLost_) SwingTo(*peak_);
        sink_->OnBlock(block_);
        framesHeard_ = 0;
        ++blocks_;
    }
    const auto due = static_cast<std::size_t>((now - start_ - blocks_ * kBlockTime) / kPhoneFrameTime);
    if (due > framesHeard_) Hear(due - framesHeard_);
}

// A square wave: frames at the peak, and as many as far below silence.
void SimulatedMicrophone::SwingTo(std::uint8_t peak) {
    constexpr std::size_t kFramesOfHalf = 4;
    for (std::size_t i = 0; i < block_.size(); ++i) {
        const bool isHigh = i / kPhoneChannels / kFramesOfHalf % 2 == 0;
        block_[i] = isHigh ? peak : static_cast<std::uint8_t>(2 * kPhoneSilence - peak);
    }
}

void SimulatedMicrophone::Hear(std::size_t frames) {
    const std::span<std::uint8_t> bytes =
        std::span<std::uint8_t>(block_).subspan(framesHeard_ * kPhoneChannels, frames * kPhoneChannels);
    framesHeard_ += frames;
    if (breathFile_ != nullptr) {
        breathFile_->Read(bytes);
        fileFrames_ += frames;
    } else {
        std::fill(bytes.begin(), bytes.end(), kPhoneSilence);
    }
    turbulence_.AddTo(bytes);
    // Lost, it hears nothing, but the file and the breath go on.
    if (isLost_) std::fill(bytes.begin(), bytes.end(), kPhoneSilence);
}

}  // namespace host
