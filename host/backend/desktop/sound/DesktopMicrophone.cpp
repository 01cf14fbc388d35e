#include "backend/desktop/sound/DesktopMicrophone.h"

#include <span>

namespace host {

namespace {

// Twice what the phone hears. A sound server brings any device to that rate, and the last step down, with its filter,
// takes a third of the time that it takes from 48 kHz.
constexpr int kUsualRate = 16'000;
// 20 ms, one of the phone's blocks: each period completes a block, and wakes nobody in vain.
constexpr Uint16 kPeriodFrames = 320;

}  // namespace

void DesktopMicrophone::Start(MicrophoneClient& client) {
    Stop();
    client_ = &client;
    keeper_.Start();
}

bool DesktopMicrophone::OpenDevice(SdlAudioDevice& device, SoundDeviceKeeper::Attempt) {
    SDL_AudioSpec wanted{};
    wanted.freq = kUsualRate;
    wanted.format = AUDIO_F32SYS;
    wanted.channels = 1;
    wanted.samples = kPeriodFrames;
    wanted.callback = TakeStream;
    wanted.userdata = this;
    const auto obtained = device.Open(wanted, SDL_AUDIO_ALLOW_FREQUENCY_CHANGE);
    if (!obtained) return false;
    rate_ = obtained->freq;
    return true;
}

void DesktopMicrophone::OnDeviceOpened(SoundDeviceKeeper::Attempt) {
    client_->OnMicrophoneOpened(rate_);
}

void DesktopMicrophone::OnDeviceLost() {
    client_->OnMicrophoneLost();
}

void DesktopMicrophone::TakeStream(void* self, Uint8* stream, int bytes) noexcept {
    const auto& microphone = *static_cast<DesktopMicrophone*>(self);
    // SDL's buffers are aligned for every format that it has.
    const auto* frames = static_cast<const float*>(static_cast<const void*>(stream));
    microphone.client_->OnFramesHeard({frames, static_cast<std::size_t>(bytes) / sizeof(float)});
}

}  // namespace host
