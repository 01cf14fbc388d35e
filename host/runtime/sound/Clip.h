#pragma once

#include <cstddef>
#include <memory>

#include "backend/MixMessages.h"

namespace host {

/// A recording in memory, mono, at the speaker's rate. It is decoded piece by piece while its beginning already plays:
/// what lies before Ready() never changes again. UI thread; the mix reads the frames that it was told are ready.
class Clip {
public:
    explicit Clip(const ClipShape& shape) : frames_(new float[shape.length]), shape_(shape) {}

    [[nodiscard]] const ClipShape& Shape() const noexcept { return shape_; }
    [[nodiscard]] std::size_t Length() const noexcept { return shape_.length; }
    [[nodiscard]] std::size_t Bytes() const noexcept { return Length() * sizeof(float); }
    [[nodiscard]] std::size_t Ready() const noexcept { return ready_; }
    [[nodiscard]] const float* Frames() const noexcept { return frames_.get(); }

    // The decoder's side.
    [[nodiscard]] float* UnreadyFrames() noexcept { return frames_.get() + ready_; }
    void AddReady(std::size_t count) noexcept { ready_ += count; }

private:
    // Not a vector: a megabyte that is about to be written need not be cleared first.
    std::unique_ptr<float[]> frames_;
    ClipShape shape_;
    std::size_t ready_ = 0;
};

/// Hears that more of an opened clip is ready. UI thread.
class ClipListener {
public:
    virtual void OnClipGrew(const Clip& clip) = 0;

protected:
    ~ClipListener() = default;
};

}  // namespace host
