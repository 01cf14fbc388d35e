// How many periods after the request to play SDL_mixer's output stream has the first frame that is not silent: a chunk
// in memory, SDL's dummy device, 256 frames a period. 1 is the very next period. Prints the median and the worst of
// many.

#include <SDL.h>
#include <SDL_mixer.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <vector>

namespace {

constexpr int kRate = 44'100;
constexpr int kPeriodFrames = 256;
constexpr int kPresses = 50;
constexpr int kChannel = 0;
constexpr Uint32 kRestMilliseconds = 20;

// Periods since the last press; the first one with a sound in it.
std::atomic<int> periods{0};
std::atomic<int> firstHeard{0};

void OnPeriod(void*, Uint8* stream, int bytes) {
    const int period = ++periods;
    const bool isHeard = std::any_of(stream, stream + bytes, [](Uint8 byte) { return byte != 0; });
    int none = 0;
    if (isHeard) firstHeard.compare_exchange_strong(none, period);
}

}  // namespace

int main() {
    SDL_SetHint(SDL_HINT_AUDIODRIVER, "dummy");
    if (SDL_Init(SDL_INIT_AUDIO) != 0 || Mix_OpenAudio(kRate, AUDIO_S16SYS, 1, kPeriodFrames) != 0) return 1;
    Mix_Chunk* const chunk = Mix_LoadWAV(BREVANT_PACKAGE "data/ocarina_4_00.ogg");
    Mix_SetPostMix(OnPeriod, nullptr);
    std::vector<int> heard;
    for (int i = 0; i < kPresses; ++i) {
        Mix_HaltChannel(kChannel);
        SDL_Delay(kRestMilliseconds);
        // The mixer's own lock: no period passes between the count's beginning and the request.
        SDL_LockAudio();
        periods = firstHeard = 0;
        Mix_PlayChannel(kChannel, chunk, 0);
        SDL_UnlockAudio();
        while (firstHeard == 0) SDL_Delay(1);
        heard.push_back(firstHeard);
    }
    std::sort(heard.begin(), heard.end());
    std::printf("press|SDL_mixer %d\npress, worst|SDL_mixer %d\n", heard[heard.size() / 2], heard.back());
    Mix_CloseAudio();
}
