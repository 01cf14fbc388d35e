#include "runtime/sound/Capture.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace host {

namespace {

constexpr std::size_t kChannels = 2;
constexpr std::uint8_t kSilence = 128;
constexpr int kHighestByte = 255;
constexpr Microseconds kBlockTime = 20 * kMicrosecondsPerMillisecond;

}  // namespace

Capture::~Capture() {
    Stop();
}

bool Capture::Start(CaptureConsumer& consumer) {
    if (consumer_ != nullptr || isClosed_) return false;
    consumer_ = &consumer;
    bytesAssembled_ = 0;
    blocksRead_ = ring_.Written();
    microphone_.Start({}, *this);
    NoticeLoss();
    return true;
}

void Capture::Stop() noexcept {
    if (consumer_ == nullptr) return;
    consumer_ = nullptr;
    microphone_.Stop();
    loop_.CancelTimer(silenceTimer_);
    silenceTimer_ = TimerQueue::kNone;
    isLost_.store(false, std::memory_order_relaxed);
    isLossNoticed_ = false;
}

void Capture::Close() noexcept {
    Stop();
    isClosed_ = true;
}

void Capture::OnMicrophoneBytes(std::span<const std::uint8_t> bytes) noexcept {
    while (!bytes.empty()) {
        const std::size_t count = std::min(bytes.size(), kBlockBytes - bytesAssembled_);
        std::memcpy(assembled_.data() + bytesAssembled_, bytes.data(), count);
        bytesAssembled_ += count;
        bytes = bytes.subspan(count);
        if (bytesAssembled_ < kBlockBytes) return;
        bytesAssembled_ = 0;
        ring_.Write(assembled_);
        // A wake-up that finds the queue full is made good by the next block's.
        static_cast<void>(loop_.PostFromThread({this}));
    }
}

void Capture::OnMicrophoneLost() noexcept {
    isLost_.store(true, std::memory_order_relaxed);
    static_cast<void>(loop_.PostFromThread({this}));
}

void Capture::OnMicrophoneRestored() noexcept {
    isLost_.store(false, std::memory_order_relaxed);
    static_cast<void>(loop_.PostFromThread({this}));
}

void Capture::OnThreadMessage(const ThreadMessage&) {
    NoticeLoss();
    DeliverUnread();
}

void Capture::NoticeLoss() {
    const bool isLost = isLost_.load(std::memory_order_relaxed);
    if (consumer_ == nullptr || isLost == isLossNoticed_) return;
    isLossNoticed_ = isLost;
    if (isLost) {
        trace_.Add("microphone", "lost").Flag("ok", false);
        console_.SayOnce("the microphone is gone; blowing works again when it is back");
        HearSilenceOnTimer();
    } else {
        console_.SayOnce("the microphone is back");
        loop_.CancelTimer(silenceTimer_);
        silenceTimer_ = TimerQueue::kNone;
    }
}

void Capture::HearSilenceOnTimer() {
    hasDeliveredLately_ = false;
    silenceTimer_ = loop_.StartTimer(kBlockTime, [this] {
        const std::weak_ptr<const void> alive = alive_;
        silenceTimer_ = TimerQueue::kNone;
        if (!hasDeliveredLately_ && consumer_->BlocksWanted() > 0) {
            Block silence;
            silence.fill(kSilence);
            Deliver(silence);
        }
        // The consumer may have stopped the capture, and even have started it again.
        if (alive.expired() || consumer_ == nullptr || !isLossNoticed_ || silenceTimer_ != TimerQueue::kNone) return;
        HearSilenceOnTimer();
    });
}

void Capture::DeliverUnread() {
    const std::weak_ptr<const void> alive = alive_;
    Block block;
    while (!alive.expired() && consumer_ != nullptr) {
        const std::uint64_t written = ring_.Written();
        const std::uint64_t wanted = consumer_->BlocksWanted();
        for (; written - blocksRead_ > wanted; ++blocksRead_) trace_.Add("microphone", "overrun").Flag("ok", false);
        if (written == blocksRead_) return;
        if (ring_.Read(blocksRead_++, block)) {
            Deliver(block);
        } else {
            trace_.Add("microphone", "overrun").Flag("ok", false);
        }
    }
}

void Capture::Deliver(Block& block) {
    hasDeliveredLately_ = true;
    ++blocksDelivered_;
    if (!keyBreath_.IsSilent()) {
        for (std::size_t i = 0; i < block.size(); i += kChannels) {
            const int breath = keyBreath_.Next();
            for (std::uint8_t& byte : std::span<std::uint8_t>(block).subspan(i, kChannels)) {
                byte = static_cast<std::uint8_t>(std::clamp(byte + breath, 0, kHighestByte));
            }
        }
    }
    consumer_->OnBlock(block);
}

}  // namespace host
