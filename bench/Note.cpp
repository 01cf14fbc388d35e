// The change of a note on the UI thread: stop, close, open, volume, play. In between the speaker takes a period, as it
// does in the program. "once heard": both recordings have sounded before. "first": neither has, since its file is
// always another one than before.

#include <filesystem>

#include "Measure.h"
#include "PlayerForBench.h"
#include "SoundPhone.h"

namespace {

void ChangeOnceHeard(benchmark::State& state) {
    SoundPhone phone;
    PlayerForBench player;
    NextRecording next;
    for (int i = 0; i < 2; ++i) {
        player.Change(next().c_str());
        phone.RunPeriods(SoundPhone::kPeriodsToDecode);
    }
    Tizen::Base::String path;
    MeasureEach(
        state,
        [&] {
            phone.RunPeriod();
            path = next().c_str();
        },
        [&] { player.Change(path); });
}
BENCHMARK(ChangeOnceHeard)->Name("note|ours");

void ChangeFirst(benchmark::State& state) {
    namespace fs = std::filesystem;
    SoundPhone phone;
    PlayerForBench player;
    NextRecording next;
    Tizen::Base::String path;
    auto modified = fs::file_time_type::clock::now();
    MeasureEach(
        state,
        [&] {
            phone.RunPeriods(SoundPhone::kPeriodsToDecode);
            const fs::path original = next();
            const fs::path copy = phone.Folder() / original.filename().string();
            fs::copy_file(original, copy, fs::copy_options::skip_existing);
            fs::last_write_time(copy, modified += std::chrono::seconds(1));
            path = copy.c_str();
        },
        [&] { player.Change(path); });
}
BENCHMARK(ChangeFirst)->Name("note, first|ours");

}  // namespace
