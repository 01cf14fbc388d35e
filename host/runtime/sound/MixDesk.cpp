#include "runtime/sound/MixDesk.h"

#include <algorithm>
#include <utility>

namespace host {

namespace {

// How soon a command is sent again that found the mix's ring full, which needs a device that has stopped asking.
constexpr Microseconds kRetryInterval = 20 * kMicrosecondsPerMillisecond;

}  // namespace

MixVoice* MixDesk::Start(std::shared_ptr<const Clip> clip, float gain, VoiceListener& listener) {
    if (isClosed_) return nullptr;
    voices_.push_back(std::make_unique<MixVoice>());
    MixVoice* voice = voices_.back().get();
    voice->clip = std::move(clip);
    voice->listener = &listener;
    voice->gain = gain;
    voice->gainGoal = gain;
    // A clip that is shorter than the lead is at its end before the mix has seen it.
    voice->endsReported = mix_.EndsDue(*voice);
    if (voice->endsReported > 0) loop_.PostTo(alive_, [this] { DeliverEnds(); });
    Send(MixCommand::Kind::kStart, voice);
    // The device may ask at any moment: its very next period must have the tone's first frame.
    Flush();
    return voice;
}

void MixDesk::Stop(MixVoice* voice) {
    voice->listener = nullptr;
    Send(MixCommand::Kind::kStop, voice);
}

void MixDesk::Pause(MixVoice* voice) {
    voice->isHeld = true;
    Send(MixCommand::Kind::kPause, voice);
}

void MixDesk::Resume(MixVoice* voice) {
    voice->isHeld = false;
    Send(MixCommand::Kind::kResume, voice);
    loop_.PostTo(alive_, [this] { DeliverEnds(); });
}

void MixDesk::SetGain(MixVoice* voice, float gain) {
    Send(MixCommand::Kind::kSetGain, voice, gain);
}

void MixDesk::GrantRepeat(MixVoice* voice) {
    Send(MixCommand::Kind::kGrantRepeat, voice);
}

void MixDesk::Finish(MixVoice* voice) {
    voice->isFinal = true;
    Send(MixCommand::Kind::kFinish, voice);
}

void MixDesk::Send(MixCommand::Kind kind, MixVoice* voice, float value) {
    // A voice that is done is out of the mix's hands: only its owner had not let go of it yet.
    if (voice->isDone.load(std::memory_order_acquire)) return Recycle();
    ++voice->commandsSent;
    unsent_.push_back({kind, voice, value});
    SendSoon();
}

void MixDesk::SendSoon() {
    if (isSendingSoon_) return;
    isSendingSoon_ = true;
    loop_.PostTo(alive_, [this] {
        isSendingSoon_ = false;
        Flush();
    });
}

void MixDesk::Flush() {
    const std::size_t count = std::min(unsent_.size(), mix_.Commands().Room());
    mix_.Commands().Push({unsent_.data(), count});
    unsent_.erase(unsent_.begin(), unsent_.begin() + static_cast<std::ptrdiff_t>(count));
    if (unsent_.empty() || isSendingSoon_) return;
    isSendingSoon_ = true;
    loop_.StartTimer(kRetryInterval, [this, alive = std::weak_ptr<const void>(alive_)] {
        if (alive.expired()) return;
        isSendingSoon_ = false;
        Flush();
    });
}

void MixDesk::TakeNews() {
    Recycle();
    DeliverEnds();
}

void MixDesk::DeliverEnds() {
    const std::weak_ptr<const void> alive = alive_;
    // A listener may start and stop voices: after each call the search begins anew.
    for (std::size_t i = 0; i < voices_.size();) {
        MixVoice& voice = *voices_[i];
        const bool hasEnd = voice.endsDelivered < voice.endsReported.load(std::memory_order_acquire);
        if (voice.listener == nullptr || voice.isHeld || voice.isFinal || !hasEnd) {
            ++i;
            continue;
        }
        ++voice.endsDelivered;
        voice.listener->OnVoiceEnd();
        if (alive.expired()) return;
        i = 0;
    }
}

void MixDesk::Recycle() {
    // The mix still touches a voice that is done when it finds a command for it on the road.
    const auto isFree = [](const std::unique_ptr<MixVoice>& voice) {
        return voice->listener == nullptr && voice->isDone.load(std::memory_order_acquire) &&
               voice->commandsSent == voice->commandsObeyed.load(std::memory_order_acquire);
    };
    voices_.erase(std::remove_if(voices_.begin(), voices_.end(), isFree), voices_.end());
}

void MixDesk::Close() noexcept {
    isClosed_ = true;
    alive_.reset();
    unsent_.clear();
    voices_.clear();
}

}  // namespace host
