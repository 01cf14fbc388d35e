#include "runtime/soundfile/Resampler.h"

#include <samplerate.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace host {

struct Resampler::State {
    explicit State(int channels) {
        int error = 0;
        // The library's shortest sinc filter: 97 dB below the sound, at a quarter of the time of the next one.
        handle = src_new(SRC_SINC_FASTEST, channels, &error);
    }
    ~State() { src_delete(handle); }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    SRC_STATE* handle = nullptr;
};

std::unique_ptr<Resampler> Resampler::Make(int channels, double ratio) {
    if (src_is_valid_ratio(ratio) == 0) return nullptr;
    auto state = std::make_unique<State>(channels);
    if (state->handle == nullptr) return nullptr;
    return std::unique_ptr<Resampler>(new Resampler(std::move(state), channels, ratio));
}

Resampler::Resampler(std::unique_ptr<State> state, int channels, double ratio)
    : state_(std::move(state)), channels_(static_cast<std::size_t>(channels)), ratio_(ratio) {}

Resampler::~Resampler() = default;

std::size_t Resampler::ReachFrames(double ratio) {
    // On either side of its middle the library's filter is 20 frames long (2464 coefficients, 128 a frame), frames of
    // the slower of the two rates. Three times as much is beyond its reach for certain.
    constexpr double kBeyondFilterFrames = 64;
    return static_cast<std::size_t>(std::ceil(kBeyondFilterFrames * std::max(1.0, ratio)));
}

Resampler::Progress Resampler::Process(std::span<const float> input, std::span<float> output, Input end) {
    SRC_DATA data{};
    data.data_in = input.data();
    data.input_frames = static_cast<long>(input.size() / channels_);
    data.data_out = output.data();
    data.output_frames = static_cast<long>(output.size() / channels_);
    data.src_ratio = ratio_;
    data.end_of_input = end == Input::kEndsHere ? 1 : 0;
    if (src_process(state_->handle, &data) != 0) return {};
    return {static_cast<std::size_t>(data.input_frames_used), static_cast<std::size_t>(data.output_frames_gen)};
}

}  // namespace host
