// The analysis of a block as it is usually written: a branch for a new peak, another one for every sample that is loud
// enough, another one for a change of side.

#include "AnalysisSignals.h"

namespace {

constexpr int kSilenceLowest = 125;
constexpr int kSilenceHighest = 130;

struct PlainLoop {
    static void Take(const Block& block);
};

void PlainLoop::Take(const Block& block) {
    int peak = 0;
    int crossings = 0;
    bool wasAbove = false;
    bool wasBelow = false;
    for (std::size_t i = 0; i < block.size(); i += kChannels) {
        const int sample = block[i];
        if (sample > peak) peak = sample;
        if (sample > kSilenceHighest) {
            if (wasBelow) ++crossings;
            wasAbove = true;
            wasBelow = false;
        } else if (sample < kSilenceLowest) {
            if (wasAbove) ++crossings;
            wasAbove = false;
            wasBelow = true;
        }
    }
    benchmark::DoNotOptimize(peak);
    benchmark::DoNotOptimize(crossings);
}

const bool kIsRegistered = RegisterForEverySignal("plain loop", [] { return std::make_unique<PlainLoop>(); });

}  // namespace
