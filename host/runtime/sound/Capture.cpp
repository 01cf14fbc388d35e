#include "runtime/sound/Capture.h"

#include <utility>

namespace host {

Capture::~Capture() {
    Stop();
}

bool Capture::Start(CaptureConsumer& consumer) {
    if (consumer_ != nullptr || isClosed_) return false;
    consumer_ = &consumer;
    unread_.clear();
    source_.Start(*this);
    return true;
}

void Capture::Stop() noexcept {
    if (consumer_ == nullptr) return;
    consumer_ = nullptr;
    source_.Stop();
    loop_.CancelTimer(silenceTimer_);
    silenceTimer_ = TimerQueue::kNone;
    if (std::exchange(isLost_, false) && watcher_ != nullptr) watcher_->OnMicrophoneGoneNoMore();
}

void Capture::Close() noexcept {
    Stop();
    isClosed_ = true;
}

void Capture::OnBlock(const Block& block) {
    wasThere_ = true;
    unread_.push_back(block);
    if (unread_.size() == 1) loop_.PostTo(lifetime_.Watch(), [this] { DeliverUnread(); });
}

void Capture::OnSourceLost() {
    if (std::exchange(isLost_, true)) return;
    trace_.Add("microphone", "lost").Flag("ok", false);
    console_.SayOnce(wasThere_ ? "the microphone is gone; blowing works again when it is back"
                               : "there is no microphone; blowing works when there is one");
    if (watcher_ != nullptr) watcher_->OnMicrophoneGone();
    HearSilenceOnTimer();
}

void Capture::OnSourceSilent() {
    if (watcher_ != nullptr) watcher_->OnMicrophoneSilent();
}

void Capture::OnSourceRestored() {
    const bool isBack = std::exchange(wasThere_, true);
    if (!std::exchange(isLost_, false)) return;
    if (watcher_ != nullptr) watcher_->OnMicrophoneGoneNoMore();
    console_.SayOnce(isBack ? "the microphone is back" : "there is a microphone now");
    loop_.CancelTimer(silenceTimer_);
    silenceTimer_ = TimerQueue::kNone;
}

void Capture::HearSilenceOnTimer() {
    hasDeliveredLately_ = false;
    silenceTimer_ = loop_.StartTimer(kBlockTime, [this] {
        const std::weak_ptr<const void> alive = lifetime_.Watch();
        silenceTimer_ = TimerQueue::kNone;
        if (!hasDeliveredLately_ && consumer_->BlocksWanted() > 0) {
            Block silence;
            silence.fill(kPhoneSilence);
            Deliver(silence);
        }
        // The consumer may have stopped the capture, and even have started it again.
        if (alive.expired() || consumer_ == nullptr || !isLost_ || silenceTimer_ != TimerQueue::kNone) return;
        HearSilenceOnTimer();
    });
}

void Capture::DeliverUnread() {
    const std::weak_ptr<const void> alive = lifetime_.Watch();
    while (!alive.expired() && consumer_ != nullptr) {
        const std::size_t wanted = consumer_->BlocksWanted();
        for (; unread_.size() > wanted; unread_.pop_front()) trace_.Add("microphone", "overrun").Flag("ok", false);
        if (unread_.empty()) return;
        Block block = unread_.front();
        unread_.pop_front();
        Deliver(block);
    }
}

void Capture::Deliver(Block& block) {
    hasDeliveredLately_ = true;
    ++blocksDelivered_;
    if (blockWatcher_ != nullptr) blockWatcher_->OnBlockHeard(block);
    keyBreath_.AddTo(block);
    if (toneWatcher_ != nullptr) toneWatcher_->OnBreath(PeakOf(block));
    consumer_->OnBlock(block);
}

}  // namespace host
