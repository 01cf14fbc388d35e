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
///
/// A voice that starts while another one has only just begun to fall takes its place, as a wind instrument's next tone
/// does while the air flows: without its attack, in phase, both gliding from the old pitch to the new one while the
/// level passes over. Being in phase, the two add up to an even level.
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
    void SetClip(ClipNumber number, const ClipShape& shape, const float* frames) noexcept;

    /// Reports at most one thing.
    void Obey(const MixCommand& command, MixReporter& reporter) noexcept;
    /// Fills all frames, -1..1.
    void Render(std::span<float> frames, MixReporter& reporter) noexcept;

private:
    struct Clip {
        ClipShape shape;
        const float* frames = nullptr;
        std::uint32_t ready = 0;
        std::uint32_t nextTake = 0;
        float fallStep = 0;   ///< of a release, in time constants a frame; 0 for a clip without one
        float fallDecay = 0;  ///< exp(-fallStep)

        [[nodiscard]] bool HasRelease() const noexcept { return fallStep > 0; }
    };

    enum class Motion : std::uint8_t {
        kRises,
        kFalls,
        kGivesWay,  ///< keeps its level while the next tone takes its place
    };

    struct Voice {
        VoiceNumber number = kNoVoice;
        ClipNumber clip = 0;
        std::uint32_t take = 0;
        std::uint32_t position = 0;
        std::uint32_t ramp = 0;  ///< 0 silent .. RampFrames() full
        Motion motion = Motion::kRises;
        bool isFinishing = false;  ///< no repeat will be granted any more
        bool isGliding = false;
        float gain = 0;
        float gainGoal = 0;
        float gainStep = 0;   ///< a frame; 0 when the goal is reached
        float fallen = 0;     ///< time constants of the release so far
        float decay = 1;      ///< exp(-fallen)
        double fraction = 0;  ///< of a frame, behind `position`; 0 unless it glides
        float shareFrom = 1;  ///< of the level, when the glide began
        float shareTo = 1;    ///< when it is over; at 0 the voice is over, too
        std::uint32_t endsReported = 0;
        std::uint32_t endsGranted = 0;
        std::uint32_t endsPassed = 0;

        /// Of the release, 0..1.
        [[nodiscard]] float Fall() const noexcept { return (1 + fallen * (1 + fallen / 2 * (1 + fallen / 3))) * decay; }
    };

    // From the tone that gives way to the one that takes its place. In cycles a frame.
    struct Glide {
        double from = 0;
        double to = 0;
        std::uint32_t frame = 0;  ///< at GlideFrames() it is over
    };

    static constexpr std::size_t kMostVoices = 128;

    void Start(const MixCommand& command, MixReporter& reporter) noexcept;
    [[nodiscard]] bool MakeRoom(MixReporter& reporter) noexcept;
    [[nodiscard]] Voice* Find(VoiceNumber number) noexcept;
    void Remove(std::size_t index) noexcept;
    void RenderVoice(Voice& voice, std::span<float> frames) noexcept;
    [[nodiscard]] std::size_t RenderRamp(Voice& voice, const float* from, std::span<float> frames) noexcept;
    [[nodiscard]] std::size_t RenderGlide(Voice& voice, std::size_t frame, std::span<float> frames) noexcept;
    [[nodiscard]] float NextLevel(Voice& voice) noexcept;
    [[nodiscard]] bool PassEnd(Voice& voice) noexcept;

    [[nodiscard]] const Voice* FindPredecessor() const noexcept;
    void TakePlace(Voice& next, const Voice& before) noexcept;
    [[nodiscard]] double GlidePitch(std::size_t frame) const noexcept;
    [[nodiscard]] double Share(const Voice& voice, std::size_t frame) const noexcept;
    [[nodiscard]] double Level(const Voice& voice) const noexcept;
    [[nodiscard]] double PhaseAt(const Voice& voice, double position) const noexcept;
    [[nodiscard]] double FrameAt(const Voice& voice, std::int64_t position) const noexcept;
    [[nodiscard]] std::uint32_t PlaceOf(const Voice& voice, std::uint32_t position) const noexcept;

    [[nodiscard]] bool IsOver(const Voice& voice) const noexcept;
    [[nodiscard]] bool HasFallen(const Voice& voice) const noexcept;
    [[nodiscard]] bool IsSteady(const Voice& voice) const noexcept;
    [[nodiscard]] bool IsLastPass(const Voice& voice) const noexcept;
    /// Frames of the ramp with which every tone starts, and with which one ends whose clip says nothing.
    [[nodiscard]] std::uint32_t RampFrames() const noexcept { return static_cast<std::uint32_t>(ramp_.size() - 1); }
    [[nodiscard]] std::uint32_t GlideFrames() const noexcept { return static_cast<std::uint32_t>(course_.size() - 1); }

    std::array<Clip, kMostClips> clips_;
    std::array<Voice, kMostVoices> voices_;  ///< the first `voiceCount_`, the one started last behind all others
    std::size_t voiceCount_ = 0;
    std::vector<float> ramp_;    ///< half a period of a raised cosine, from 0 to 1
    std::vector<float> course_;  ///< of a glide; the same curve
    Glide glide_;
    std::uint32_t leadFrames_ = 0;
    bool isMuted_ = false;
};

}  // namespace host
