#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "backend/SpscRing.h"

namespace host {

/// Carries what the speaker plays from the audio thread to the recorder. When the recorder stands still for so long
/// that the ring is full, silence takes the place of what did not fit: the recording keeps its time line.
class OutputTap {
public:
    OutputTap() : ring_(kCapacityFrames) {}

    /// Audio thread.
    void Push(std::span<const float> frames) noexcept {
        static constexpr float kSilence = 0;
        while (framesLeftOut_ > 0 && ring_.Room() > 0) {
            ring_.Push({&kSilence, 1});
            --framesLeftOut_;
        }
        if (framesLeftOut_ == 0 && ring_.Room() >= frames.size()) {
            ring_.Push(frames);
        } else {
            framesLeftOut_ += frames.size();
        }
    }
    /// UI thread. Returns how many frames were there.
    std::size_t Pop(std::span<float> frames) noexcept { return ring_.Pop(frames); }
    /// UI thread. Drops what is there.
    void Clear() noexcept {
        std::array<float, 256> dropped;
        while (Pop(dropped) > 0) continue;
    }

private:
    static constexpr std::size_t kCapacityFrames = std::size_t{1} << 18U;  // some 6 s

    SpscRing<float> ring_;
    std::size_t framesLeftOut_ = 0;
};

}  // namespace host
