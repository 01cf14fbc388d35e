#include "backend/desktop/sound/DesktopMicrophone.h"

#include <span>

namespace host {

namespace {

constexpr int kUsualRate = 48'000;
// 16 ms: less than one of the phone's blocks, so that none waits for the second period after it.
constexpr Uint16 kPeriodFrames = 768;

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
