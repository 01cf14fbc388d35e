// The change of a note with stb_vorbis alone: the old file closed, the new one opened and its first period decoded.

#define STB_VORBIS_HEADER_ONLY
#include <stb/stb_vorbis.h>

#include <array>

#include "Measure.h"

namespace {

constexpr int kPeriodFrames = 256;

void Reopen(benchmark::State& state) {
    NextRecording next;
    stb_vorbis* file = nullptr;
    std::array<float, kPeriodFrames> frames{};
    MeasureEach(state, [&] {
        stb_vorbis_close(file);
        file = stb_vorbis_open_filename(next().c_str(), nullptr, nullptr);
        if (stb_vorbis_get_samples_float_interleaved(file, 1, frames.data(), kPeriodFrames) == 0) {
            state.SkipWithError("no frames");
        }
    });
    stb_vorbis_close(file);
}
BENCHMARK(Reopen)->Name("note|stb_vorbis reopen");

}  // namespace
