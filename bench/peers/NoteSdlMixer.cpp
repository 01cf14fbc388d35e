// The change of a note with SDL_mixer, in two ways. As music: halt, free, load the Ogg Vorbis file, set the volume,
// play it for ever. As a chunk that was decoded before: halt the channel, set its volume, play the chunk for ever. The
// device is SDL's dummy, one channel at 44100 Hz, with the same period of 256 frames.

#include <SDL.h>
#include <SDL_mixer.h>

#include "Measure.h"

namespace {

constexpr int kRate = 44'100;
constexpr int kPeriodFrames = 256;
constexpr int kForEver = -1;
constexpr int kChannel = 0;

void OpenMixer() {
    static const bool isOpen = [] {
        SDL_SetHint(SDL_HINT_AUDIODRIVER, "dummy");
        SDL_Init(SDL_INIT_AUDIO);
        return Mix_OpenAudio(kRate, AUDIO_S16SYS, 1, kPeriodFrames) == 0;
    }();
    if (!isOpen) std::abort();
}

void ChangeMusic(benchmark::State& state) {
    OpenMixer();
    NextRecording next;
    Mix_Music* music = nullptr;
    MeasureEach(state, [&] {
        Mix_HaltMusic();
        Mix_FreeMusic(music);
        music = Mix_LoadMUS(next().c_str());
        Mix_VolumeMusic(MIX_MAX_VOLUME);
        if (Mix_PlayMusic(music, kForEver) != 0) state.SkipWithError(Mix_GetError());
    });
    Mix_HaltMusic();
    Mix_FreeMusic(music);
}
BENCHMARK(ChangeMusic)->Name("note|SDL_mixer");

void ChangeChunk(benchmark::State& state) {
    OpenMixer();
    NextRecording next;
    Mix_Chunk* const chunks[] = {Mix_LoadWAV(next().c_str()), Mix_LoadWAV(next().c_str())};
    unsigned count = 0;
    MeasureEach(state, [&] {
        Mix_HaltChannel(kChannel);
        Mix_Volume(kChannel, MIX_MAX_VOLUME);
        if (Mix_PlayChannel(kChannel, chunks[++count % 2], kForEver) != kChannel) state.SkipWithError(Mix_GetError());
    });
    Mix_HaltChannel(kChannel);
    for (Mix_Chunk* chunk : chunks) Mix_FreeChunk(chunk);
}
BENCHMARK(ChangeChunk)->Name("note|SDL_mixer chunk in memory");

}  // namespace
