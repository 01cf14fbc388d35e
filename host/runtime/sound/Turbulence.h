#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "runtime/sound/PhoneFormat.h"

namespace host {

/// The sound of somebody blowing on a microphone, the same in every run: low-passed noise from 35 Hz up. It is made in
/// chunks of 10 ms, each scaled so that its highest sample is exactly the level and none lies deeper than its negative;
/// so whatever 20 ms one looks at, a steady breath is equally strong. UI thread only.
class Turbulence {
public:
    /// 0..1 of full scale; others are brought to the nearer end. It holds from the next sample on.
    void SetLevel(double level);
    /// Adds the next samples to both channels of `bytes`, whole frames of what the phone's microphone delivers.
    void AddTo(std::span<std::uint8_t> bytes);

private:
    static constexpr std::size_t kChunksPerSecond = 100;
    static constexpr std::size_t kChunkFrames = kPhoneRate / kChunksPerSecond;

    [[nodiscard]] bool IsSilent() const noexcept { return level_ <= 0; }
    /// In steps of a byte.
    [[nodiscard]] int Next();
    void MakeChunk();

    double level_ = 0;
    std::array<double, kChunkFrames> chunk_{};  ///< -1..1, its highest sample 1
    std::size_t next_ = kChunkFrames;
    std::uint64_t random_ = 0x9e3779b97f4a7c15;
    double low_ = 0;
    double drift_ = 0;
};

}  // namespace host
