// What the two audio devices cost by themselves: a window that is never drawn, a speaker that is given silence with the
// same period of 256 frames, a microphone whose blocks of 20 ms are thrown away, and a main thread that waits for
// events.

#include <SDL.h>

#include <algorithm>

namespace {

SDL_AudioSpec Wanted(int rate, SDL_AudioFormat format, Uint8 channels, Uint16 frames, SDL_AudioCallback callback) {
    SDL_AudioSpec wanted{};
    wanted.freq = rate;
    wanted.format = format;
    wanted.channels = channels;
    wanted.samples = frames;
    wanted.callback = callback;
    return wanted;
}

}  // namespace

int main(int, char**) {
    const auto giveSilence = [](void*, Uint8* stream, int bytes) { std::fill_n(stream, bytes, Uint8{0}); };
    const auto throwAway = [](void*, Uint8*, int) {};
    if (SDL_Init(SDL_INIT_VIDEO | SDL_INIT_AUDIO) != 0) return 1;
    if (SDL_CreateWindow("peer", 0, 0, 720, 1280, 0) == nullptr) return 1;
    for (const int isCapture : {0, 1}) {
        const SDL_AudioSpec wanted = isCapture != 0 ? Wanted(8000, AUDIO_U8, 2, 160, throwAway)
                                                    : Wanted(44'100, AUDIO_F32SYS, 1, 256, giveSilence);
        SDL_AudioSpec obtained;
        const SDL_AudioDeviceID device = SDL_OpenAudioDevice(nullptr, isCapture, &wanted, &obtained, 0);
        if (device == 0) return 1;
        SDL_PauseAudioDevice(device, 0);
    }
    SDL_Event event;
    while (SDL_WaitEvent(&event) != 0 && event.type != SDL_QUIT) {
    }
}
