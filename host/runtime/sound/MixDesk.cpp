#include "runtime/sound/MixDesk.h"

#include <algorithm>
#include <utility>

namespace host {

namespace {

using Kind = MixCommand::Kind;

// How soon commands are sent again that the speaker did not take, which needs a device that has stopped asking.
constexpr Microseconds kRetryInterval = 20 * kMicrosecondsPerMillisecond;

// The mix keeps a clip that it has, for the next time, as long as there is room for as many again.
constexpr std::ptrdiff_t kClipsKept = kMostClips / 2;

constexpr std::size_t kNewsAtOnce = 64;

}  // namespace

VoiceNumber MixDesk::Start(const std::shared_ptr<const Clip>& clip, float gain, VoiceListener& listener) {
    if (isClosed_) return kNoVoice;
    const ClipNumber number = NumberOf(clip);
    if (number == kMostClips) return kNoVoice;
    if (++lastVoice_ == kNoVoice) ++lastVoice_;
    // A clip that is shorter than the lead is at its end before the mix has seen it.
    const std::uint32_t ends = EndsDue(clip->Shape(), 0, 0, LeadFrames(speaker_.PeriodFrames()));
    voices_.push_back({lastVoice_, number, &listener, ends});
    if (HertzOf(number) > 0) tones_.Begin(HertzOf(number));
    if (ends > 0) loop_.PostTo(lifetime_.Watch(), [this] { DeliverEnds(); });
    Send({Kind::kStart, lastVoice_, number, ends, gain});
    // The device may ask at any moment: its very next period must have the tone's first frame.
    Flush();
    return lastVoice_;
}

ClipNumber MixDesk::NumberOf(const std::shared_ptr<const Clip>& clip) {
    const auto known = std::find_if(places_.begin(), places_.end(),
                                    [&](const Place& place) { return place.clip == clip && !place.isDropped; });
    if (known != places_.end()) return static_cast<ClipNumber>(known - places_.begin());

    DropUnusedClips();
    const auto free =
        std::find_if(places_.begin(), places_.end(), [](const Place& place) { return place.clip == nullptr; });
    const auto number = static_cast<ClipNumber>(free - places_.begin());
    if (free == places_.end()) return number;
    free->clip = clip;
    speaker_.HandOver(number, clip->Shape(), clip->Frames());
    OnClipGrew(*clip);
    return number;
}

// 0 when it is not known.
double MixDesk::HertzOf(ClipNumber clip) const {
    const float period = places_[clip].clip == nullptr ? 0 : places_[clip].clip->Shape().periodFrames;
    return period > 0 ? speaker_.Rate() / static_cast<double>(period) : 0;
}

void MixDesk::DropUnusedClips() {
    const auto taken =
        std::count_if(places_.begin(), places_.end(), [](const Place& place) { return place.clip != nullptr; });
    for (ClipNumber number = 0; number < kMostClips; ++number) {
        Place& place = places_[number];
        if (place.clip == nullptr || place.isDropped) continue;
        const bool isWanted = place.clip.use_count() > 1 && taken < kClipsKept;
        const bool isPlayed =
            std::any_of(voices_.begin(), voices_.end(), [&](const Voice& voice) { return voice.clip == number; });
        if (isWanted || isPlayed) continue;
        place.isDropped = true;
        Send({Kind::kDropClip, kNoVoice, number});
    }
}

void MixDesk::Stop(VoiceNumber number) {
    Voice* voice = Find(number);
    if (voice == nullptr) return;
    voice->listener = nullptr;
    if (HertzOf(voice->clip) > 0) tones_.End(HertzOf(voice->clip), loop_.Now());
    SendToVoice({Kind::kStop, number});
    ForgetVoices();
}

void MixDesk::SetGain(VoiceNumber voice, float gain) {
    SendToVoice({Kind::kSetGain, voice, 0, 0, gain});
}

void MixDesk::GrantRepeat(VoiceNumber voice) {
    SendToVoice({Kind::kGrantRepeat, voice});
}

void MixDesk::Finish(VoiceNumber number) {
    if (Voice* voice = Find(number)) voice->isFinal = true;
    SendToVoice({Kind::kFinish, number});
}

void MixDesk::OnClipGrew(const Clip& clip) {
    for (ClipNumber number = 0; number < kMostClips; ++number) {
        if (places_[number].clip.get() != &clip || places_[number].isDropped) continue;
        Send({Kind::kClipReady, kNoVoice, number, static_cast<std::uint32_t>(clip.Ready())});
    }
}

void MixDesk::SetOutput(Output output) {
    Send({output == Output::kMuted ? Kind::kMute : Kind::kUnmute});
    Flush();
}

MixDesk::Voice* MixDesk::Find(VoiceNumber number) {
    const auto found =
        std::find_if(voices_.begin(), voices_.end(), [&](const Voice& voice) { return voice.number == number; });
    return found == voices_.end() ? nullptr : &*found;
}

void MixDesk::SendToVoice(const MixCommand& command) {
    const Voice* voice = Find(command.voice);
    if (voice != nullptr && !voice->isDone) Send(command);
}

void MixDesk::Send(const MixCommand& command) {
    if (isClosed_) return;
    unsent_.push_back(command);
    FlushSoon();
}

void MixDesk::FlushSoon() {
    if (std::exchange(isSendingSoon_, true)) return;
    loop_.PostTo(lifetime_.Watch(), [this] {
        isSendingSoon_ = false;
        Flush();
    });
}

void MixDesk::Flush() {
    const std::size_t count = speaker_.Send(unsent_);
    unsent_.erase(unsent_.begin(), unsent_.begin() + static_cast<std::ptrdiff_t>(count));
    if (unsent_.empty() || std::exchange(isSendingSoon_, true)) return;
    loop_.StartTimer(kRetryInterval, [this, alive = lifetime_.Watch()] {
        if (alive.expired()) return;
        isSendingSoon_ = false;
        Flush();
    });
}

void MixDesk::TakeNews() {
    std::array<MixNews, kNewsAtOnce> taken;
    while (const std::size_t count = speaker_.TakeNews(taken)) {
        for (const MixNews& news : std::span(taken).first(count)) {
            if (news.kind == MixNews::Kind::kClipDropped) {
                places_[news.clip] = {};
            } else if (Voice* voice = Find(news.voice)) {
                voice->isDone = voice->isDone || news.kind == MixNews::Kind::kDone;
                if (news.kind == MixNews::Kind::kEnds) voice->endsReported = news.number;
            }
        }
    }
    ForgetVoices();
    DeliverEnds();
}

void MixDesk::DeliverEnds() {
    const std::weak_ptr<const void> alive = lifetime_.Watch();
    // A listener may start and stop voices: after each call the search begins anew.
    for (std::size_t i = 0; i < voices_.size();) {
        Voice& voice = voices_[i];
        if (voice.listener == nullptr || voice.isFinal || voice.endsDelivered == voice.endsReported) {
            ++i;
            continue;
        }
        ++voice.endsDelivered;
        voice.listener->OnVoiceEnd();
        if (alive.expired()) return;
        i = 0;
    }
}

void MixDesk::ForgetVoices() {
    voices_.erase(std::remove_if(voices_.begin(), voices_.end(),
                                 [](const Voice& voice) { return voice.isDone && voice.listener == nullptr; }),
                  voices_.end());
}

void MixDesk::Close() noexcept {
    isClosed_ = true;
    lifetime_.End();
    unsent_.clear();
    voices_.clear();
    places_.fill({});
}

}  // namespace host
