#include "runtime/sound/ClipPlayer.h"

#include <algorithm>
#include <utility>

#include "runtime/sound/Sound.h"

namespace host {

namespace {

std::string_view FileName(std::string_view path) {
    return path.substr(path.find_last_of('/') + 1);
}

}  // namespace

ClipPlayer::ClipPlayer(Sound& sound, ClipPlayerListener& listener) : sound_(&sound), listener_(listener) {
    sound_->Add(*this);
}

ClipPlayer::~ClipPlayer() {
    SilenceVoice();
    if (sound_ != nullptr) sound_->Remove(*this);
}

bool ClipPlayer::IsAny(std::initializer_list<PlayerPhase> phases) const noexcept {
    return sound_ != nullptr && std::find(phases.begin(), phases.end(), phase_) != phases.end();
}

PlayerOutcome ClipPlayer::Open(const std::string& path, OpenMode mode) {
    if (!IsAny({PlayerPhase::kInitialized, PlayerPhase::kClosed, PlayerPhase::kError}))
        return PlayerOutcome::kInvalidState;
    if (mode == OpenMode::kAtOnce) return OpenNow(path);
    const PlayerPhase before = std::exchange(phase_, PlayerPhase::kOpening);
    sound_->GetLoop().PostTo(alive_, [this, path, before] {
        if (sound_ == nullptr) return;
        phase_ = before;
        listener_.OnOpened(OpenNow(path));
    });
    return PlayerOutcome::kDone;
}

PlayerOutcome ClipPlayer::OpenNow(const std::string& path) {
    const ClipCache::Outcome outcome = sound_->GetClips().Open(path, clip_);
    const bool isOpen = outcome == ClipCache::Outcome::kOpened;
    sound_->GetTrace().Add("player", "open").Text("file", FileName(path)).Flag("ok", isOpen);
    if (isOpen) {
        phase_ = PlayerPhase::kOpened;
        return PlayerOutcome::kDone;
    }
    return outcome == ClipCache::Outcome::kMissing ? PlayerOutcome::kMissing : PlayerOutcome::kUnsupported;
}

PlayerOutcome ClipPlayer::Close() {
    if (!IsAny({PlayerPhase::kOpened, PlayerPhase::kEndOfClip, PlayerPhase::kStopped, PlayerPhase::kPlaying,
                PlayerPhase::kError})) {
        return PlayerOutcome::kInvalidState;
    }
    SilenceVoice();
    clip_.reset();
    phase_ = PlayerPhase::kClosed;
    sound_->GetTrace().Add("player", "close");
    return PlayerOutcome::kDone;
}

PlayerOutcome ClipPlayer::Play() {
    if (!IsAny({PlayerPhase::kOpened, PlayerPhase::kEndOfClip, PlayerPhase::kStopped})) {
        return PlayerOutcome::kInvalidState;
    }
    if (answer_ == Answer::kNone || answer_ == Answer::kStop) {
        answer_ = Answer::kRepeat;
        if (voice_ != kNoVoice) sound_->GetDesk().GrantRepeat(voice_);
    } else {
        SilenceVoice();
        voice_ = sound_->GetDesk().Start(clip_, Gain(), *this);
    }
    phase_ = PlayerPhase::kPlaying;
    sound_->GetTrace().Add("player", "play");
    return PlayerOutcome::kDone;
}

PlayerOutcome ClipPlayer::Stop() {
    if (!IsAny({PlayerPhase::kOpened, PlayerPhase::kEndOfClip, PlayerPhase::kPlaying})) {
        return PlayerOutcome::kInvalidState;
    }
    if (answer_ == Answer::kNone) {
        // A play may follow within this notification; the sound goes on until that is known.
        answer_ = Answer::kStop;
    } else {
        SilenceVoice();
    }
    phase_ = PlayerPhase::kStopped;
    sound_->GetTrace().Add("player", "stop");
    return PlayerOutcome::kDone;
}

PlayerOutcome ClipPlayer::SetVolume(int volume) {
    if (volume < 0 || volume > kFullVolume) return PlayerOutcome::kOutOfRange;
    volume_ = volume;
    if (voice_ != kNoVoice) sound_->GetDesk().SetGain(voice_, Gain());
    if (sound_ != nullptr) sound_->GetTrace().Add("player", "volume").Number("value", volume);
    return PlayerOutcome::kDone;
}

void ClipPlayer::OnVoiceEnd() {
    const std::weak_ptr<const void> alive = alive_;
    phase_ = PlayerPhase::kEndOfClip;
    answer_ = Answer::kNone;
    sound_->GetTrace().Add("player", "end");
    listener_.OnEndOfClip();
    if (alive.expired()) return;
    const Answer answer = std::exchange(answer_, Answer::kNotAsked);
    if (voice_ == kNoVoice) return;
    if (answer == Answer::kNone) sound_->GetDesk().Finish(voice_);
    if (answer == Answer::kStop) SilenceVoice();
}

void ClipPlayer::OnSoundGone() noexcept {
    sound_ = nullptr;
    phase_ = PlayerPhase::kError;
}

void ClipPlayer::SilenceVoice() {
    // Whatever is asked for from now on within a notification is no answer to it any more.
    if (answer_ != Answer::kNotAsked) answer_ = Answer::kRepeat;
    if (voice_ != kNoVoice) sound_->GetDesk().Stop(std::exchange(voice_, kNoVoice));
}

float ClipPlayer::Gain() const noexcept {
    return static_cast<float>(volume_) / static_cast<float>(kFullVolume);
}

}  // namespace host
