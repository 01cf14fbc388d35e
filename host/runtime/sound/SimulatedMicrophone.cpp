#include "runtime/sound/SimulatedMicrophone.h"

#include <algorithm>
#include <utility>

namespace host {

namespace {

constexpr std::size_t kChannels = 2;
constexpr std::size_t kBlockFrames = kBlockBytes / kChannels;
constexpr Microseconds kFrameTime = 125;  // at 8000 frames a second
constexpr Microseconds kBlockTime = kFrameTime * static_cast<Microseconds>(kBlockFrames);
constexpr int kSilence = 128;
constexpr int kHighestByte = 255;

}  // namespace

SimulatedMicrophone::~SimulatedMicrophone() {
    Stop();
}

void SimulatedMicrophone::SetBreath(double level) {
    HearUntil(loop_.Now());
    turbulence_.SetLevel(level);
}

void SimulatedMicrophone::Lose() {
    HearUntil(loop_.Now());
    if (std::exchange(isLost_, true) || client_ == nullptr) return;
    client_->OnMicrophoneLost();
}

void SimulatedMicrophone::Restore() {
    HearUntil(loop_.Now());
    if (!std::exchange(isLost_, false) || client_ == nullptr) return;
    client_->OnMicrophoneRestored();
}

void SimulatedMicrophone::Start(const MicrophoneFormat&, MicrophoneClient& client) {
    Stop();
    client_ = &client;
    start_ = loop_.Now();
    if (firstStart_ < 0) firstStart_ = start_;
    blocks_ = 0;
    framesHeard_ = 0;
    if (breathFile_ != nullptr) {
        const auto frames = static_cast<std::uint64_t>((start_ - firstStart_) / kFrameTime);
        breathFile_->Skip(frames - std::min(frames, fileFrames_));
        fileFrames_ = std::max(frames, fileFrames_);
    }
    if (isLost_) client_->OnMicrophoneLost();
    WaitForBlock();
}

void SimulatedMicrophone::Stop() noexcept {
    loop_.CancelTimer(timer_);
    timer_ = TimerQueue::kNone;
    client_ = nullptr;
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
    if (client_ == nullptr) return;
    // More than one block is due only where the loop is late: the client sees to it that the oldest ones go.
    while (now >= BlockEnd()) {
        Hear(kBlockFrames - framesHeard_);
        client_->OnMicrophoneBytes(block_);
        framesHeard_ = 0;
        ++blocks_;
    }
    const auto due = static_cast<std::size_t>((now - start_ - blocks_ * kBlockTime) / kFrameTime);
    if (due > framesHeard_) Hear(due - framesHeard_);
}

void SimulatedMicrophone::Hear(std::size_t frames) {
    const std::span<std::uint8_t> bytes =
        std::span<std::uint8_t>(block_).subspan(framesHeard_ * kChannels, frames * kChannels);
    framesHeard_ += frames;
    if (breathFile_ != nullptr) {
        breathFile_->Read(bytes);
        fileFrames_ += frames;
    } else {
        std::fill(bytes.begin(), bytes.end(), static_cast<std::uint8_t>(kSilence));
    }
    if (!turbulence_.IsSilent()) {
        for (std::size_t i = 0; i < bytes.size(); i += kChannels) {
            const int breath = turbulence_.Next();
            for (std::uint8_t& byte : bytes.subspan(i, kChannels)) {
                byte = static_cast<std::uint8_t>(std::clamp(byte + breath, 0, kHighestByte));
            }
        }
    }
    // Lost, it hears nothing, but the world's time goes on.
    if (isLost_) std::fill(bytes.begin(), bytes.end(), static_cast<std::uint8_t>(kSilence));
}

}  // namespace host
