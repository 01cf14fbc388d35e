#pragma once

#include <cstddef>
#include <memory>
#include <span>

namespace host {

/// Changes the rate of a stream of interleaved frames, piece by piece, with a windowed sinc. One thread at a time; not
/// for the audio thread.
class Resampler {
public:
    /// `ratio` is output frames for one input frame, 1/256..256. Null when it is outside of that.
    [[nodiscard]] static std::unique_ptr<Resampler> Make(int channels, double ratio);
    ~Resampler();

    struct Progress {
        std::size_t framesTaken = 0;
        std::size_t framesMade = 0;
    };
    enum class Input { kGoesOn, kEndsHere };
    /// Takes frames of `input` and makes frames of `output` until one of them is used up. The filter keeps a few input
    /// frames back until it is told that no more follow.
    Progress Process(std::span<const float> input, std::span<float> output, Input end);

    /// The output frames that a single input frame can reach, at most, before or behind its own place.
    [[nodiscard]] static std::size_t ReachFrames(double ratio);

private:
    struct State;

    Resampler(std::unique_ptr<State> state, int channels, double ratio);

    std::unique_ptr<State> state_;
    std::size_t channels_;
    double ratio_;
};

}  // namespace host
