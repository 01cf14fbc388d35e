#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <utility>

#include "backend/MixMessages.h"

namespace host {

/// A recording in memory, mono, at the speaker's rate. It is decoded piece by piece while its beginning already plays:
/// what lies before Ready() never changes again. UI thread; the mix reads the frames that it was told are ready.
class Clip {
public:
    /// `fault` is what the recording says wrongly of itself; empty when nothing is wrong.
    Clip(const ClipShape& shape, std::string fault)
        : frames_(new float[shape.Frames()]), shape_(shape), fault_(std::move(fault)) {}

    [[nodiscard]] const ClipShape& Shape() const noexcept { return shape_; }
    /// Frames of all takes.
    [[nodiscard]] std::size_t Length() const noexcept { return shape_.Frames(); }
    [[nodiscard]] std::size_t Bytes() const noexcept { return Length() * sizeof(float); }
    [[nodiscard]] std::size_t Ready() const noexcept { return ready_; }
    [[nodiscard]] const float* Frames() const noexcept { return frames_.get(); }

    [[nodiscard]] const std::string& Fault() const noexcept { return fault_; }

    // The decoder's side.
    [[nodiscard]] float* UnreadyFrames() noexcept { return frames_.get() + ready_; }
    void AddReady(std::size_t count) noexcept { ready_ += count; }

private:
    // Not a vector: a megabyte that is about to be written need not be cleared first.
    std::unique_ptr<float[]> frames_;
    ClipShape shape_;
    std::string fault_;
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
