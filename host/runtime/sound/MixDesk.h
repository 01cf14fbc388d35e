#pragma once

#include <array>
#include <memory>
#include <vector>

#include "backend/Speaker.h"
#include "runtime/loop/EventLoop.h"
#include "runtime/loop/Lifetime.h"
#include "runtime/sound/Clip.h"
#include "runtime/sound/OwnTones.h"

namespace host {

/// Hears that a voice comes to the end of its clip: once for every repeat that may follow. UI thread.
class VoiceListener {
public:
    virtual void OnVoiceEnd() = 0;

protected:
    ~VoiceListener() = default;
};

/// The UI thread's side of the mix: it numbers voices and clips, sends the commands and tells the voices' listeners
/// what the mix reports. What one handler of the event loop commands takes effect at one moment, so that a stop and a
/// start make a crossfade.
class MixDesk final : public ClipListener {
public:
    MixDesk(Speaker& speaker, EventLoop& loop) : speaker_(speaker), loop_(loop) {}
    MixDesk(const MixDesk&) = delete;
    MixDesk& operator=(const MixDesk&) = delete;

    // An operation on kNoVoice, or on a voice that is over, does nothing.

    /// Plays `clip` from its beginning. The voice is the caller's until it stops it; kNoVoice once the desk is closed,
    /// or when too many clips sound.
    [[nodiscard]] VoiceNumber Start(const std::shared_ptr<const Clip>& clip, float gain, VoiceListener& listener);
    /// The voice is not the caller's any more, and its listener hears no more of it.
    void Stop(VoiceNumber voice);
    void SetGain(VoiceNumber voice, float gain);
    /// The answer to OnVoiceEnd: the clip is to be repeated once more.
    void GrantRepeat(VoiceNumber voice);
    /// The other answer: the clip's end is the voice's. It is still to be stopped in the end.
    void Finish(VoiceNumber voice);

    enum class Output { kHeard, kMuted };
    /// Muted, all is silent and goes on in time.
    void SetOutput(Output output);

    /// The mix reported something: tells the listeners, and gives up what is done.
    void TakeNews();
    /// The mix runs no more: ends all without a word.
    void Close() noexcept;

    /// The tones of the voices, as far as their recordings tell them.
    [[nodiscard]] OwnTones& GetTones() noexcept { return tones_; }

    // ClipListener
    void OnClipGrew(const Clip& clip) override;

private:
    struct Voice {
        VoiceNumber number = kNoVoice;
        ClipNumber clip = 0;
        VoiceListener* listener = nullptr;  ///< null once the voice was stopped; nothing is delivered then
        std::uint32_t endsReported = 0;
        std::uint32_t endsDelivered = 0;
        bool isFinal = false;  ///< no end of it is of interest any more
        bool isDone = false;   ///< the mix has forgotten it
    };

    // A clip that the mix has.
    struct Place {
        std::shared_ptr<const Clip> clip;  ///< null where the number is free
        bool isDropped = false;            ///< the mix has been told to forget it
    };

    [[nodiscard]] Voice* Find(VoiceNumber number);
    [[nodiscard]] ClipNumber NumberOf(const std::shared_ptr<const Clip>& clip);
    void DropUnusedClips();
    void Send(const MixCommand& command);
    void SendToVoice(const MixCommand& command);
    void FlushSoon();
    void Flush();
    void DeliverEnds();
    void ForgetVoices();

    Speaker& speaker_;
    EventLoop& loop_;
    [[nodiscard]] double HertzOf(ClipNumber clip) const;

    OwnTones tones_;
    VoiceNumber lastVoice_ = kNoVoice;
    std::vector<Voice> voices_;
    std::array<Place, kMostClips> places_;
    std::vector<MixCommand> unsent_;
    Lifetime lifetime_;
    bool isSendingSoon_ = false;
    bool isClosed_ = false;
};

}  // namespace host
