#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

// What the sound above the seam and the mix inside a speaker tell each other. All of it is plain values, so that it can
// go through a ring in shared memory as well as through a message port to another address space.

namespace host {

/// One playing of one clip. The sender of the commands gives the numbers out, and none twice.
using VoiceNumber = std::uint32_t;
inline constexpr VoiceNumber kNoVoice = 0;

/// A clip that was handed over: 0..kMostClips - 1.
using ClipNumber = std::uint32_t;
inline constexpr std::size_t kMostClips = 256;

/// The frames of a clip. The first pass plays 0..length; every repeat starts at `loopStart`, whose frame follows the
/// last one without a seam. Behind `length` lie the further takes of the beginning, one after the other: each stands in
/// for the first `loopStart` frames.
struct ClipShape {
    std::uint32_t length = 0;
    std::uint32_t loopStart = 0;
    std::uint32_t takes = 1;
    /// In which a tone that ends falls from 90 to 10 % of its level; 0 for the short ramp of a clip that says nothing.
    float releaseFrames = 0;
    /// Of one period of the clip's tone; 0 when it is not known. Only such clips take each other's place in phase.
    float periodFrames = 0;

    /// Of all takes together.
    [[nodiscard]] constexpr std::uint32_t Frames() const noexcept { return length + (takes - 1) * loopStart; }
};

struct MixCommand {
    enum class Kind : std::uint8_t {
        kStart,        ///< `voice` plays `clip` with `gain`; `number` ends of it are reported already. It takes the
                       ///< place of a voice that has only just begun to fall
        kStop,         ///< `voice` falls silent as its clip says, and is done
        kSetGain,      ///< of `voice`, to `gain`
        kGrantRepeat,  ///< `voice` may pass one more end
        kFinish,       ///< `voice` gets no more repeats: it ends with the clip, or falls silent from there
        kClipReady,    ///< the first `number` frames of `clip` are there, and do not change any more
        kDropClip,     ///< no later command names `clip`
        kMute,         ///< silence for all; the voices go on in time
        kUnmute,
    };

    Kind kind = Kind::kStop;
    VoiceNumber voice = kNoVoice;
    ClipNumber clip = 0;
    std::uint32_t number = 0;
    float gain = 0;
};

struct MixNews {
    enum class Kind : std::uint8_t {
        kEnds,         ///< `voice` has come close to the end of its clip `number` times so far
        kDone,         ///< `voice` makes no sound any more
        kClipDropped,  ///< the mix has forgotten `clip`; its number is free
    };

    Kind kind = Kind::kEnds;
    VoiceNumber voice = kNoVoice;
    ClipNumber clip = 0;
    std::uint32_t number = 0;
};

/// How far ahead of a clip's end the end is reported, so that the answer is there in time: 93 ms at 44100 Hz, or two
/// periods of a device that asks for more at once.
[[nodiscard]] constexpr std::uint32_t LeadFrames(int periodFrames) noexcept {
    constexpr int kShortestLead = 4096;
    constexpr int kPeriods = 2;
    return static_cast<std::uint32_t>(std::max(kShortestLead, kPeriods * periodFrames));
}

/// How many ends of its clip a voice should have reported by now that has come to `position` and has passed
/// `endsPassed` ends.
[[nodiscard]] constexpr std::uint32_t EndsDue(const ClipShape& clip, std::uint32_t position, std::uint32_t endsPassed,
                                              std::uint32_t leadFrames) noexcept {
    const std::uint32_t toEnd = clip.length - position;
    if (toEnd > leadFrames) return endsPassed;
    return endsPassed + 1 + (leadFrames - toEnd) / (clip.length - clip.loopStart);
}

}  // namespace host
