#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <memory>
#include <random>
#include <utility>
#include <vector>

#include "Measure.h"

// What the microphone may deliver, as blocks of 160 stereo frames of unsigned 8-bit samples. There are enough different
// blocks of each kind that a processor cannot learn their branches by heart.

inline constexpr std::size_t kBlockBytes = 320;
inline constexpr std::size_t kChannels = 2;

using Block = std::array<std::uint8_t, kBlockBytes>;
using Signal = std::vector<Block>;

template <typename Sample>
Signal MakeSignal(Sample sample) {
    constexpr std::size_t kBlocks = 256;
    constexpr double kSilence = 128;
    Signal signal(kBlocks);
    for (Block& block : signal) {
        for (std::size_t i = 0; i < block.size(); i += kChannels) {
            block[i] = block[i + 1] = static_cast<std::uint8_t>(std::clamp(kSilence + sample(), 0.0, 255.0));
        }
    }
    return signal;
}

inline const std::vector<std::pair<std::string, Signal>>& Signals() {
    static const std::vector<std::pair<std::string, Signal>> signals = [] {
        constexpr double kFull = 127;
        std::mt19937 random(1);
        std::uniform_real_distribution<double> white(-kFull, kFull);
        double breath = 0;
        double side = kFull;
        std::vector<std::pair<std::string, Signal>> made;
        made.emplace_back("silence", MakeSignal([] { return 0.0; }));
        // A breath is turbulence with most of its power in the low tones.
        made.emplace_back("blowing", MakeSignal([&] { return breath += 0.3 * (white(random) - breath); }));
        made.emplace_back("noise", MakeSignal([&] { return white(random); }));
        made.emplace_back("crossings", MakeSignal([&] { return side = -side; }));
        return made;
    }();
    return signals;
}

/// `makeAnalysis` makes a pointer to what takes one block after another.
template <typename MakeAnalysis>
bool RegisterForEverySignal(const std::string& column, MakeAnalysis makeAnalysis) {
    for (const auto& [name, signal] : Signals()) {
        const auto bench = [makeAnalysis, &signal = signal](benchmark::State& state) {
            auto analysis = makeAnalysis();
            const auto analyseAll = [&] {
                for (const Block& block : signal) analysis->Take(block);
            };
            MeasureEach(
                state, [] {}, analyseAll, static_cast<int>(signal.size()));
        };
        benchmark::RegisterBenchmark(std::string("analysis, ").append(name).append("|").append(column).c_str(), bench);
    }
    return true;
}
