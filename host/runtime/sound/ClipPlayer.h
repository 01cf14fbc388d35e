#pragma once

#include <memory>
#include <string>

#include "runtime/loop/EventLoop.h"
#include "runtime/sound/ClipCache.h"
#include "runtime/sound/MixDesk.h"
#include "runtime/trace/Trace.h"

namespace host {

class Sound;

/// What a player is doing; the framework's numbers.
enum class PlayerPhase {
    kInitialized = 0,
    kOpening = 1,
    kOpened = 2,
    kEndOfClip = 3,
    kStopped = 4,
    kPaused = 5,
    kPlaying = 6,
    kClosed = 7,
    kError = 8
};

enum class PlayerOutcome { kDone, kInvalidState, kMissing, kUnsupported, kOutOfRange };

/// Receives a player's news on the UI thread. The player may be destroyed in each of them.
class ClipPlayerListener {
public:
    virtual void OnOpened(PlayerOutcome outcome) = 0;  ///< of an asynchronous open
    virtual void OnEndOfClip() = 0;

protected:
    ~ClipPlayerListener() = default;
};

/// One player of one recording at a time: which operation is allowed when, and what it means for the mix. UI thread
/// only. An operation that the phase does not allow gives kInvalidState and changes nothing.
class ClipPlayer final : private VoiceListener {
public:
    ClipPlayer(Sound& sound, ClipPlayerListener& listener);
    ~ClipPlayer();
    ClipPlayer(const ClipPlayer&) = delete;
    ClipPlayer& operator=(const ClipPlayer&) = delete;

    enum class OpenMode { kAtOnce, kLater };
    PlayerOutcome Open(const std::string& path, OpenMode mode);
    PlayerOutcome Close();
    PlayerOutcome Play();
    PlayerOutcome Stop();
    /// 0..kFullVolume; kOutOfRange else. Allowed in every phase.
    PlayerOutcome SetVolume(int volume);
    [[nodiscard]] int GetVolume() const noexcept { return volume_; }
    [[nodiscard]] PlayerPhase GetPhase() const noexcept { return phase_; }

    static constexpr int kFullVolume = 100;

private:
    friend class Sound;

    // VoiceListener
    void OnVoiceEnd() override;
    // From Sound.
    void OnSoundClosed() noexcept { voice_ = kNoVoice; }
    void OnSoundGone() noexcept;

    [[nodiscard]] bool IsAny(std::initializer_list<PlayerPhase> phases) const noexcept;
    PlayerOutcome OpenNow(const std::string& path);
    void SilenceVoice();
    [[nodiscard]] float Gain() const noexcept;

    Sound* sound_;  ///< null once it is gone
    ClipPlayerListener& listener_;
    PlayerPhase phase_ = PlayerPhase::kInitialized;
    int volume_ = kFullVolume;
    std::shared_ptr<const Clip> clip_;
    VoiceNumber voice_ = kNoVoice;  ///< none while nothing sounds, and once the sound is closed

    // What the listener has answered within the notification of an end.
    enum class Answer { kNotAsked, kNone, kStop, kRepeat };
    Answer answer_ = Answer::kNotAsked;

    std::shared_ptr<const ClipPlayer*> alive_ = std::make_shared<const ClipPlayer*>(this);
};

}  // namespace host
