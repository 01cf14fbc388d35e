// The change of a note with libsndfile alone: the old file closed, the new one opened and its first period decoded,
// which is the least that a player without a cache does.

#include <sndfile.h>

#include <array>

#include "Measure.h"

namespace {

constexpr int kPeriodFrames = 256;

void Reopen(benchmark::State& state) {
    NextRecording next;
    SNDFILE* file = nullptr;
    std::array<float, kPeriodFrames> frames{};
    MeasureEach(state, [&] {
        sf_close(file);
        SF_INFO info{};
        file = sf_open(next().c_str(), SFM_READ, &info);
        if (sf_readf_float(file, frames.data(), kPeriodFrames) != kPeriodFrames) state.SkipWithError("no frames");
    });
    sf_close(file);
}
BENCHMARK(Reopen)->Name("note|libsndfile reopen");

}  // namespace
