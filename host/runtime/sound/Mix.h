#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "runtime/sound/MixVoice.h"
#include "runtime/sound/SpscRing.h"

namespace host {

struct MixCommand {
    enum class Kind : std::uint8_t {
        kStart,
        kStop,   ///< ramps to silence, then gives the voice back
        kPause,  ///< ramps to silence and keeps the place
        kResume,
        kSetGain,      ///< `value`
        kGrantRepeat,  ///< one more end may be passed
        kFinish,       ///< no more repeats: gives the voice back at the clip's end
    };

    Kind kind = Kind::kStop;
    MixVoice* voice = nullptr;
    float value = 0;
};

/// Adds up what sounds. Render runs on the audio thread and only copies; commands come through a lock-free ring, and
/// what the desk must know stands in the voices' atomics. Not for opening, decoding or deciding anything.
class Mix {
public:
    Mix();
    Mix(const Mix&) = delete;
    Mix& operator=(const Mix&) = delete;

    /// Before the first command.
    void Prepare(int rate, int periodFrames);
    /// Frames of the ramp with which every tone starts and ends: 5 ms, rounded down.
    [[nodiscard]] std::size_t RampFrames() const noexcept { return ramp_.size() - 1; }

    /// The commands' road, whose producer is the desk.
    [[nodiscard]] SpscRing<MixCommand>& Commands() noexcept { return commands_; }

    enum class News { kNone, kSome };
    /// Audio thread. Fills all frames, -1..1. Tells whether a voice has something to say to the desk.
    News Render(std::span<float> frames) noexcept;

    /// How many ends are to be reported when `voice` has come to `position` and passed `endsPassed` ends.
    [[nodiscard]] std::uint64_t EndsDue(const MixVoice& voice) const noexcept;

private:
    void Obey(const MixCommand& command) noexcept;
    void RenderVoice(MixVoice& voice, std::span<float> frames) noexcept;
    [[nodiscard]] bool PassEnd(MixVoice& voice) noexcept;
    [[nodiscard]] std::size_t RenderRamp(MixVoice& voice, std::span<float> frames) noexcept;
    [[nodiscard]] bool IsSteady(const MixVoice& voice) const noexcept;

    SpscRing<MixCommand> commands_;
    std::vector<float> ramp_;  ///< half a period of a raised cosine, from 0 to 1
    std::size_t leadFrames_ = 0;
    MixVoice* voices_ = nullptr;
};

}  // namespace host
