#include "Tizen/Media/Player.h"

#include "runtime/Runtime.h"
#include "runtime/sound/ClipPlayer.h"
#include "runtime/sound/Sound.h"

namespace Tizen {
namespace Media {

namespace {

result ToResult(host::PlayerOutcome outcome) {
    switch (outcome) {
        case host::PlayerOutcome::kDone:
            return E_SUCCESS;
        case host::PlayerOutcome::kInvalidState:
            return E_INVALID_STATE;
        case host::PlayerOutcome::kMissing:
            return E_FILE_NOT_FOUND;
        case host::PlayerOutcome::kUnsupported:
            return E_UNSUPPORTED_FORMAT;
        case host::PlayerOutcome::kOutOfRange:
            return E_OUT_OF_RANGE;
    }
    return E_FAILURE;
}

}  // namespace

/// A constructed player: the runtime's player, and its listener in the framework's words.
class Player::Session final : private host::ClipPlayerListener {
public:
    explicit Session(IPlayerEventListener& listener)
        : listener_(listener), player_(host::Runtime::Current().GetSound(), *this) {}

    host::ClipPlayer& GetPlayer() { return player_; }

private:
    // The player may be deleted in each of these: they end with the notification.
    void OnOpened(host::PlayerOutcome outcome) override { listener_.OnPlayerOpened(ToResult(outcome)); }
    void OnEndOfClip() override { listener_.OnPlayerEndOfClip(); }

    IPlayerEventListener& listener_;
    host::ClipPlayer player_;
};

Player::Player() = default;

Player::~Player() = default;

result Player::Construct(IPlayerEventListener& listener, const VideoBuffer* pBuffer) {
    if (__pSession) return E_INVALID_STATE;
    if (pBuffer != nullptr) return E_UNSUPPORTED_FORMAT;
    __pSession = std::make_unique<Session>(listener);
    return E_SUCCESS;
}

result Player::OpenFile(const Tizen::Base::String& path, bool isAsync) {
    if (!__pSession) return E_INVALID_STATE;
    const auto mode = isAsync ? host::ClipPlayer::OpenMode::kLater : host::ClipPlayer::OpenMode::kAtOnce;
    return ToResult(__pSession->GetPlayer().Open(path.ToUtf8(), mode));
}

result Player::Close() {
    return __pSession ? ToResult(__pSession->GetPlayer().Close()) : E_INVALID_STATE;
}

result Player::Play() {
    return __pSession ? ToResult(__pSession->GetPlayer().Play()) : E_INVALID_STATE;
}

result Player::Stop() {
    return __pSession ? ToResult(__pSession->GetPlayer().Stop()) : E_INVALID_STATE;
}

result Player::SetVolume(int volume) {
    return __pSession ? ToResult(__pSession->GetPlayer().SetVolume(volume)) : E_INVALID_STATE;
}

int Player::GetVolume() const {
    return __pSession ? __pSession->GetPlayer().GetVolume() : 0;
}

PlayerState Player::GetState() const {
    return __pSession ? static_cast<PlayerState>(__pSession->GetPlayer().GetPhase()) : PLAYER_STATE_INITIALIZED;
}

}  // namespace Media
}  // namespace Tizen
