// The least that answers a key or a breath with a sound: SDL's window and its two devices, a square wave while a key is
// down or the microphone is as loud as a breath.

#include <SDL.h>

#include <algorithm>
#include <atomic>

namespace {

constexpr int kRate = 48'000;
constexpr int kPeriodFrames = 256;
constexpr int kMicrophoneRate = 8000;
constexpr int kBlockFrames = 160;
constexpr Uint8 kBlown = 153;
constexpr int kHalfWave = 50;  // frames

std::atomic<bool> isKeyDown = false;
std::atomic<bool> isBlown = false;

void Sound(void*, Uint8* stream, int bytes) {
    auto* frames = static_cast<float*>(static_cast<void*>(stream));
    static int at = 0;
    for (int i = 0; i < bytes / static_cast<int>(sizeof(float)); ++i, ++at) {
        frames[i] = !isKeyDown && !isBlown ? 0 : at / kHalfWave % 2 == 0 ? 0.5F : -0.5F;
    }
}

void Hear(void*, Uint8* stream, int bytes) {
    isBlown = *std::max_element(stream, stream + bytes) >= kBlown;
}

bool OpenDevice(int isCapture, int rate, SDL_AudioFormat format, Uint8 channels, Uint16 frames,
                SDL_AudioCallback callback) {
    SDL_AudioSpec wanted{};
    wanted.freq = rate;
    wanted.format = format;
    wanted.channels = channels;
    wanted.samples = frames;
    wanted.callback = callback;
    SDL_AudioSpec obtained;
    const SDL_AudioDeviceID device = SDL_OpenAudioDevice(nullptr, isCapture, &wanted, &obtained, 0);
    if (device == 0) return false;
    SDL_PauseAudioDevice(device, 0);
    return true;
}

}  // namespace

int main(int, char**) {
    if (SDL_Init(SDL_INIT_VIDEO | SDL_INIT_AUDIO) != 0) return 1;
    if (SDL_CreateWindow("peer", 0, 0, 360, 640, 0) == nullptr) return 1;
    if (!OpenDevice(0, kRate, AUDIO_F32SYS, 1, kPeriodFrames, Sound)) return 1;
    if (!OpenDevice(1, kMicrophoneRate, AUDIO_U8, 2, kBlockFrames, Hear)) return 1;
    SDL_Event event;
    while (SDL_WaitEvent(&event) != 0 && event.type != SDL_QUIT) {
        if (event.type == SDL_KEYDOWN || event.type == SDL_KEYUP) isKeyDown = event.type == SDL_KEYDOWN;
    }
}
