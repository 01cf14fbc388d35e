#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "backend/MixMessages.h"

namespace host {

/// Takes what the mix has to tell.
class MixReporter {
public:
    /// False when there is no room: the mix tells it again in the next period.
    virtual bool Report(const MixNews& news) noexcept = 0;

protected:
    ~MixReporter() = default;
};

/// Adds up the voices that sound. It runs where the device asks for frames, and only copies: not for opening, decoding
/// or deciding anything. Only Prepare takes memory.
class Mix {
public:
    Mix();
    Mix(const Mix&) = delete;
    Mix& operator=(const Mix&) = delete;

    /// Forgets everything. Not while Obey or Render may run.
    void Prepare(int rate, int periodFrames);
    /// As many frames are rendered at once from now on, at most. Not while Obey or Render may run.
    void SetPeriod(int periodFrames) noexcept { leadFrames_ = LeadFrames(periodFrames); }
    /// Before the first command that names the clip; while none does, any thread may.
    void SetClip(ClipNumber number, const ClipShape& shape, const float* frames) noexcept {
        clips_[number] = {shape, frames, 0};
    }

    /// Reports at most one thing.
    void Obey(const MixCommand& command, MixReporter& reporter) noexcept;
    /// Fills all frames, -1..1.
    void Render(std::span<float> frames, MixReporter& reporter) noexcept;

private:
    struct Clip {
        ClipShape shape;
        const float* frames = nullptr;
        std::uint32_t ready = 0;
    };

    enum class Motion : std::uint8_t { kRises, kFalls };

    struct Voice {
        VoiceNumber number = kNoVoice;
        ClipNumber clip = 0;
        std::uint32_t position = 0;
        std::uint32_t ramp = 0;  ///< 0 silent .. RampFrames() full
        Motion motion = Motion::kRises;
        bool isFinishing = false;  ///< no repeat will be granted any more
        float gain = 0;
        float gainGoal = 0;
        float gainStep = 0;  ///< a frame; 0 when the goal is reached
        std::uint32_t endsReported = 0;
        std::uint32_t endsGranted = 0;
        std::uint32_t endsPassed = 0;
    };

    static constexpr std::size_t kMostVoices = 128;

    void Start(const MixCommand& command, MixReporter& reporter) noexcept;
    [[nodiscard]] bool MakeRoom(MixReporter& reporter) noexcept;
    [[nodiscard]] Voice* Find(VoiceNumber number) noexcept;
    void Remove(std::size_t index) noexcept;
    void RenderVoice(Voice& voice, std::span<float> frames) noexcept;
    [[nodiscard]] std::size_t RenderRamp(Voice& voice, const float* from, std::span<float> frames) noexcept;
    [[nodiscard]] bool PassEnd(Voice& voice) noexcept;
    [[nodiscard]] bool IsOver(const Voice& voice) const noexcept;
    [[nodiscard]] bool IsSteady(const Voice& voice) const noexcept;
    [[nodiscard]] static bool IsLastPass(const Voice& voice) noexcept;
    /// Frames of the ramp with which every tone starts and ends.
    [[nodiscard]] std::uint32_t RampFrames() const noexcept { return static_cast<std::uint32_t>(ramp_.size() - 1); }

    std::array<Clip, kMostClips> clips_;
    std::array<Voice, kMostVoices> voices_;  ///< the first `voiceCount_`, the one started last behind all others
    std::size_t voiceCount_ = 0;
    std::vector<float> ramp_;  ///< half a period of a raised cosine, from 0 to 1
    std::uint32_t leadFrames_ = 0;
    bool isMuted_ = false;
};

}  // namespace host
