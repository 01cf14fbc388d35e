#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "backend/Clock.h"

// What the phone's microphone delivers: unsigned 8-bit samples, two channels interleaved, in blocks.

namespace host {

inline constexpr int kPhoneRate = 8000;  ///< frames a second
inline constexpr int kPhoneChannels = 2;
inline constexpr std::uint8_t kPhoneSilence = 128;
/// What the loudest sample of 1.0 lies above silence.
inline constexpr int kPhoneFullScale = 127;

/// 160 frames, 20 ms: the smallest block at which a steady breath as soft as the program hears does not flicker
/// (simulated with low-passed noise from 35 Hz up; see docs/architecture.md).
inline constexpr std::size_t kBlockBytes = 320;
inline constexpr std::size_t kBlockFrames = kBlockBytes / kPhoneChannels;
inline constexpr Microseconds kPhoneFrameTime = kMicrosecondsPerSecond / kPhoneRate;
inline constexpr Microseconds kBlockTime = kPhoneFrameTime * static_cast<Microseconds>(kBlockFrames);
using Block = std::array<std::uint8_t, kBlockBytes>;

/// The highest sample of the first channel, which the phone's programs look at; kPhoneSilence without any above it.
[[nodiscard]] inline std::uint8_t PeakOf(const Block& block) noexcept {
    std::uint8_t peak = kPhoneSilence;
    for (std::size_t i = 0; i < block.size(); i += kPhoneChannels) peak = std::max(peak, block[i]);
    return peak;
}

}  // namespace host
