#pragma once

#include <atomic>
#include <cstddef>
#include <memory>

namespace host {

/// A recording in memory, mono, at the speaker's rate. The UI thread decodes it piece by piece while the audio thread
/// already plays its beginning: what lies before Ready() never changes again.
class Clip {
public:
    /// Played from 0 to `length`; a repeat goes on from `loopStart`, the frame that follows the last one.
    Clip(std::size_t length, std::size_t loopStart)
        : frames_(new float[length]), length_(length), loopStart_(loopStart) {}

    [[nodiscard]] std::size_t Length() const noexcept { return length_; }
    [[nodiscard]] std::size_t LoopStart() const noexcept { return loopStart_; }
    /// How long one repeat lasts.
    [[nodiscard]] std::size_t LoopLength() const noexcept { return length_ - loopStart_; }
    [[nodiscard]] std::size_t Bytes() const noexcept { return length_ * sizeof(float); }

    /// Any thread.
    [[nodiscard]] std::size_t Ready() const noexcept { return ready_.load(std::memory_order_acquire); }
    [[nodiscard]] const float* Frames() const noexcept { return frames_.get(); }

    // The decoder's side.
    [[nodiscard]] float* UnreadyFrames() noexcept { return frames_.get() + ready_.load(std::memory_order_relaxed); }
    void AddReady(std::size_t count) noexcept {
        ready_.store(ready_.load(std::memory_order_relaxed) + count, std::memory_order_release);
    }

private:
    // Not a vector: a megabyte that is about to be written need not be cleared first.
    std::unique_ptr<float[]> frames_;
    std::size_t length_;
    std::size_t loopStart_;
    std::atomic<std::size_t> ready_{0};
};

}  // namespace host
