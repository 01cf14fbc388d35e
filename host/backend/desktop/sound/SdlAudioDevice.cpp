#include "backend/desktop/sound/SdlAudioDevice.h"

namespace host {

SdlAudioDevice::~SdlAudioDevice() {
    Close();
}

std::optional<SDL_AudioSpec> SdlAudioDevice::Open(const SDL_AudioSpec& wanted, int changes) {
    Close();
    if (!audio_ || !audio_->IsWorking()) audio_.emplace(SDL_INIT_AUDIO);
    if (!audio_->IsWorking()) return std::nullopt;
    const int isCapture = direction_ == Direction::kCapture ? 1 : 0;
    // Asking for a device where there is none makes ALSA complain on stderr, at every try.
    if (SDL_GetNumAudioDevices(isCapture) == 0) return std::nullopt;
    SDL_AudioSpec obtained{};
    device_ = SDL_OpenAudioDevice(nullptr, isCapture, &wanted, &obtained, changes);
    if (device_ == 0) return std::nullopt;
    return obtained;
}

void SdlAudioDevice::Close() noexcept {
    if (device_ != 0) SDL_CloseAudioDevice(device_);
    device_ = 0;
}

}  // namespace host
