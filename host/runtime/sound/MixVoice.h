#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "runtime/sound/Clip.h"

namespace host {

/// Hears, on the UI thread, that a voice comes to the end of its clip: once for every repeat that may follow.
class VoiceListener {
public:
    virtual void OnVoiceEnd() = 0;

protected:
    ~VoiceListener() = default;
};

/// One playing of one clip. The desk (UI thread) makes it, hands it to the mix (audio thread) by a command, and has it
/// back when the mix is done with it.
struct MixVoice {
    // The desk's. The mix reads the clip between its Start command and `isDone`.
    std::shared_ptr<const Clip> clip;
    VoiceListener* listener = nullptr;  ///< null once the voice was stopped; nothing is delivered then
    bool isHeld = false;                ///< paused: its ends are delivered when it goes on
    bool isFinal = false;               ///< no end of it is of interest any more
    std::uint64_t endsDelivered = 0;
    std::uint64_t commandsSent = 0;

    // The mix's; the desk sets them before the Start command.
    enum class Motion { kRises, kFalls };
    enum class AfterFall { kEnds, kPauses };
    std::size_t position = 0;
    std::size_t ramp = 0;  ///< 0 silent .. Mix::RampFrames() full
    Motion motion = Motion::kRises;
    AfterFall afterFall = AfterFall::kEnds;
    float gain = 0;
    float gainGoal = 0;
    float gainStep = 0;  ///< a frame; 0 when the goal is reached
    std::uint64_t endsGranted = 0;
    std::uint64_t endsPassed = 0;
    bool isFinishing = false;  ///< no repeat will be granted any more
    MixVoice* next = nullptr;

    // From the mix to the desk.
    std::atomic<std::uint64_t> endsReported{0};
    std::atomic<bool> isDone{false};
    std::atomic<std::uint64_t> commandsObeyed{0};
};

}  // namespace host
