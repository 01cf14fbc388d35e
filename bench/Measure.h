#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

// What the benches of this folder share. A benchmark is named "row|column" after its place in the table that table.sh
// prints from the counter "median".

/// Measures each run of `work` alone; `between` runs before it, unmeasured. The median of the runs, in nanoseconds, is
/// hardly moved by what else the machine does. Work that takes less than a microsecond is done `count` times a run.
template <typename Between, typename Work>
void MeasureEach(benchmark::State& state, Between between, Work work, int count = 1) {
    std::vector<double> times;
    for (auto _ : state) {
        between();
        const auto begin = std::chrono::steady_clock::now();
        work();
        times.push_back(std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - begin).count());
    }
    if (times.empty()) return;  // It was skipped for an error.
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    state.counters["median"] = *middle / count;
}

template <typename Work>
void MeasureEach(benchmark::State& state, Work work) {
    MeasureEach(
        state, [] {}, work);
}

/// Two tones of the package in turn, so that each change of note is one.
class NextRecording {
public:
    const std::string& operator()() { return paths_[++count_ % 2]; }

private:
    const std::string paths_[2] = {BREVANT_PACKAGE "data/ocarina_4_00.ogg", BREVANT_PACKAGE "data/ocarina_4_07.ogg"};
    unsigned count_ = 0;
};
