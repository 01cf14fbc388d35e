// How many periods after the request to play the output stream has the first frame that is not silent. 1 is the very
// next period. Prints the median and the worst of many presses.

#include <algorithm>
#include <cstdio>

#include "Measure.h"
#include "PlayerForBench.h"
#include "SoundPhone.h"

int main() {
    constexpr int kPresses = 50;
    constexpr int kRestPeriods = 20;
    constexpr int kGivenUp = 1000;
    SoundPhone phone;
    PlayerForBench player;
    NextRecording next;
    std::vector<int> heard;
    for (int i = 0; i < kPresses; ++i) {
        player.End();
        phone.RunPeriods(kRestPeriods);
        player.Change(next().c_str());
        int period = 1;
        while (!phone.RunPeriod() && period < kGivenUp) ++period;
        heard.push_back(period);
    }
    std::sort(heard.begin(), heard.end());
    std::printf("press|ours %d\npress, worst|ours %d\n", heard[heard.size() / 2], heard.back());
}
