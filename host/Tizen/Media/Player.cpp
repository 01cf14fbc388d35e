#include "Tizen/Media/Player.h"

#include <algorithm>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

#include "runtime/loop/Lifetime.h"
#include "runtime/sound/Sound.h"

namespace Tizen {
namespace Media {

using host::Sound;

namespace {

constexpr int kFullVolume = 100;

std::string_view FileName(std::string_view path) {
    return path.substr(path.find_last_of('/') + 1);
}

}  // namespace

/// A constructed player: what it plays, and which of its operations are allowed now. The mix's desk tells it the ends.
struct Player::Session final : host::VoiceListener {
    explicit Session(IPlayerEventListener& playerListener) : listener(playerListener) {}
    ~Session() { Silence(); }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    void OnVoiceEnd() override;

    /// False also once the phone's sound is gone: nothing is allowed then.
    [[nodiscard]] bool IsAny(std::initializer_list<PlayerState> states) const {
        return Sound::Current() != nullptr && std::find(states.begin(), states.end(), state) != states.end();
    }
    [[nodiscard]] float Gain() const { return static_cast<float>(volume) / static_cast<float>(kFullVolume); }
    void Silence();

    IPlayerEventListener& listener;
    PlayerState state = PLAYER_STATE_INITIALIZED;
    int volume = kFullVolume;
    std::shared_ptr<const host::Clip> clip;
    std::string fileName;                      ///< the clip's, without its folder
    host::VoiceNumber voice = host::kNoVoice;  ///< none while nothing sounds

    // What the listener has answered so far within the notification of an end.
    enum class Answer { kNotAsked, kNone, kStop, kFinal };
    Answer answer = Answer::kNotAsked;

    host::Lifetime lifetime;
};

void Player::Session::OnVoiceEnd() {
    const std::weak_ptr<const void> alive = lifetime.Watch();
    Sound& sound = *Sound::Current();
    state = PLAYER_STATE_ENDOFCLIP;
    answer = Answer::kNone;
    sound.GetTrace().Add("player", "end");
    listener.OnPlayerEndOfClip();
    if (alive.expired()) return;
    // From here on, Stop or Play is an ordinary request, not the answer to the end.
    const Answer given = std::exchange(answer, Answer::kNotAsked);
    if (given == Answer::kNone) {
        sound.GetDesk().Finish(voice);
        sound.TellOfToneEnd(voice);
    }
    if (given == Answer::kStop) Silence();
}

void Player::Session::Silence() {
    if (answer != Answer::kNotAsked) answer = Answer::kFinal;
    const host::VoiceNumber silenced = std::exchange(voice, host::kNoVoice);
    if (silenced == host::kNoVoice || Sound::Current() == nullptr) return;
    Sound::Current()->GetDesk().Stop(silenced);
    Sound::Current()->TellOfToneEnd(silenced);
}

Player::Player() = default;

Player::~Player() = default;

result Player::Construct(IPlayerEventListener& listener, const VideoBuffer* pBuffer) {
    if (session_) return E_INVALID_STATE;
    if (pBuffer != nullptr) return E_UNSUPPORTED_FORMAT;
    session_ = std::make_unique<Session>(listener);
    return E_SUCCESS;
}

result Player::OpenFile(const Tizen::Base::String& path, bool isAsync) {
    if (isAsync) return E_INVALID_ARG;
    if (!session_ || !session_->IsAny({PLAYER_STATE_INITIALIZED, PLAYER_STATE_CLOSED, PLAYER_STATE_ERROR})) {
        return E_INVALID_STATE;
    }
    Sound& sound = *Sound::Current();
    const std::string file = path.ToUtf8();
    const auto outcome = sound.GetClips().Open(file, session_->clip);
    const bool isOpen = outcome == host::ClipCache::Outcome::kOpened;
    sound.GetTrace().Add("player", "open").Text("file", FileName(file)).Flag("ok", isOpen);
    if (!isOpen) {
        const bool isMissing = outcome == host::ClipCache::Outcome::kMissing;
        sound.GetConsole().SayOnce(file +
                                   (isMissing ? ": it is missing" : ": it does not decode to its end as a sound"));
        return isMissing ? E_FILE_NOT_FOUND : E_UNSUPPORTED_FORMAT;
    }
    if (!session_->clip->Fault().empty()) sound.GetConsole().SayOnce(file + ": " + session_->clip->Fault());
    session_->fileName = FileName(file);
    session_->state = PLAYER_STATE_OPENED;
    return E_SUCCESS;
}

result Player::Close() {
    if (!session_ ||
        !session_->IsAny({PLAYER_STATE_OPENED, PLAYER_STATE_ENDOFCLIP, PLAYER_STATE_STOPPED, PLAYER_STATE_PLAYING})) {
        return E_INVALID_STATE;
    }
    session_->Silence();
    session_->clip.reset();
    session_->state = PLAYER_STATE_CLOSED;
    Sound::Current()->GetTrace().Add("player", "close");
    return E_SUCCESS;
}

result Player::Play() {
    if (!session_ || !session_->IsAny({PLAYER_STATE_OPENED, PLAYER_STATE_ENDOFCLIP, PLAYER_STATE_STOPPED})) {
        return E_INVALID_STATE;
    }
    Sound& sound = *Sound::Current();
    if (session_->answer == Session::Answer::kNone || session_->answer == Session::Answer::kStop) {
        session_->answer = Session::Answer::kFinal;
        sound.GetDesk().GrantRepeat(session_->voice);
        sound.TellOfRepeat();
    } else {
        session_->Silence();
        session_->voice = sound.GetDesk().Start(session_->clip, session_->Gain(), *session_);
        sound.TellOfTone(session_->voice, session_->fileName);
    }
    session_->state = PLAYER_STATE_PLAYING;
    sound.GetTrace().Add("player", "play");
    return E_SUCCESS;
}

result Player::Stop() {
    if (!session_ || !session_->IsAny({PLAYER_STATE_OPENED, PLAYER_STATE_ENDOFCLIP, PLAYER_STATE_PLAYING})) {
        return E_INVALID_STATE;
    }
    if (session_->answer == Session::Answer::kNone) {
        // A play may follow within this notification; the sound goes on until that is known.
        session_->answer = Session::Answer::kStop;
    } else {
        session_->Silence();
    }
    session_->state = PLAYER_STATE_STOPPED;
    Sound::Current()->GetTrace().Add("player", "stop");
    return E_SUCCESS;
}

result Player::SetVolume(int volume) {
    if (!session_ || Sound::Current() == nullptr) return E_INVALID_STATE;
    if (volume < 0 || volume > kFullVolume) return E_OUT_OF_RANGE;
    session_->volume = volume;
    Sound::Current()->GetDesk().SetGain(session_->voice, session_->Gain());
    Sound::Current()->GetTrace().Add("player", "volume").Number("value", volume);
    return E_SUCCESS;
}

int Player::GetVolume() const {
    return session_ ? session_->volume : 0;
}

PlayerState Player::GetState() const {
    return session_ ? session_->state : PLAYER_STATE_INITIALIZED;
}

}  // namespace Media
}  // namespace Tizen
