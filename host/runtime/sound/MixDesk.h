#pragma once

#include <memory>
#include <vector>

#include "runtime/loop/EventLoop.h"
#include "runtime/sound/Clip.h"
#include "runtime/sound/Mix.h"
#include "runtime/sound/MixVoice.h"

namespace host {

/// The UI thread's side of the mix: it makes the voices, sends the commands and tells the voices' listeners what the
/// mix reports. What one handler of the event loop commands takes effect at one moment, so that a stop and a start make
/// a crossfade.
class MixDesk {
public:
    MixDesk(Mix& mix, EventLoop& loop) : mix_(mix), loop_(loop) {}
    MixDesk(const MixDesk&) = delete;
    MixDesk& operator=(const MixDesk&) = delete;

    /// Plays `clip` from its beginning. The voice is the caller's until it stops it; null once the desk is closed.
    MixVoice* Start(std::shared_ptr<const Clip> clip, float gain, VoiceListener& listener);
    /// The voice is not the caller's any more, and its listener hears no more of it.
    void Stop(MixVoice* voice);
    void Pause(MixVoice* voice);
    void Resume(MixVoice* voice);
    void SetGain(MixVoice* voice, float gain);
    /// The answer to OnVoiceEnd: the clip is to be repeated once more.
    void GrantRepeat(MixVoice* voice);
    /// The other answer: the clip's end is the voice's. It is still to be stopped in the end.
    void Finish(MixVoice* voice);

    /// The mix reported something: tells the listeners and takes back the voices that are done.
    void TakeNews();
    /// The mix renders no more: ends all without a word. The listeners forget their voices by themselves.
    void Close() noexcept;

private:
    void Send(MixCommand::Kind kind, MixVoice* voice, float value = 0);
    void SendSoon();
    void Flush();
    void DeliverEnds();
    void Recycle();

    Mix& mix_;
    EventLoop& loop_;
    std::vector<std::unique_ptr<MixVoice>> voices_;
    std::vector<MixCommand> unsent_;
    std::shared_ptr<const MixDesk*> alive_ = std::make_shared<const MixDesk*>(this);  ///< for events that come too late
    bool isSendingSoon_ = false;
    bool isClosed_ = false;
};

}  // namespace host
