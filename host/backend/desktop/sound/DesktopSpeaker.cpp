#include "backend/desktop/sound/DesktopSpeaker.h"

#include <algorithm>
#include <span>

namespace host {

void DesktopSpeaker::Open(SpeakerClient& client) {
    Close();
    underrunsAtOpen_ = meter_.Count();
    rate_ = kUsualRate;
    periodFrames_ = kWantedPeriodFrames;
    StartMix(client, rate_, periodFrames_);
    keeper_.Start();
}

void DesktopSpeaker::Close() noexcept {
    keeper_.Stop();
    pacing_.reset();
    StopMix();
}

bool DesktopSpeaker::OpenDevice(SdlAudioDevice& device, SoundDeviceKeeper::Attempt attempt) {
    SDL_AudioSpec wanted{};
    wanted.freq = rate_;
    wanted.format = AUDIO_F32SYS;
    wanted.channels = 1;
    wanted.samples = kWantedPeriodFrames;
    wanted.callback = FillStream;
    wanted.userdata = this;
    meter_.Restart();
    // What was mixed at one rate so far stays at it: SDL converts if a later device has another.
    const int changes = attempt == SoundDeviceKeeper::Attempt::kFirst
                            ? SDL_AUDIO_ALLOW_FREQUENCY_CHANGE | SDL_AUDIO_ALLOW_SAMPLES_CHANGE
                            : SDL_AUDIO_ALLOW_SAMPLES_CHANGE;
    const auto obtained = device.Open(wanted, changes);
    if (!obtained) return false;
    rate_ = obtained->freq;
    periodFrames_ = std::max<int>(1, obtained->samples);
    return true;
}

void DesktopSpeaker::OnDeviceOpened(SoundDeviceKeeper::Attempt attempt) {
    pacing_.reset();
    if (attempt == SoundDeviceKeeper::Attempt::kFirst) {
        PrepareMix(rate_, periodFrames_);
    } else {
        RestoreDevice(periodFrames_);
    }
}

void DesktopSpeaker::OnDeviceLost() {
    LoseDevice();
    pacing_.emplace(*this, rate_, periodFrames_);
}

void DesktopSpeaker::FillStream(void* self, Uint8* stream, int bytes) noexcept {
    auto& speaker = *static_cast<DesktopSpeaker*>(self);
    // SDL's buffers are aligned for every format that it has.
    const std::span<float> frames(static_cast<float*>(static_cast<void*>(stream)),
                                  static_cast<std::size_t>(bytes) / sizeof(float));
    speaker.meter_.OnPeriod(speaker.clock_.Now(),
                            static_cast<Microseconds>(frames.size()) * kMicrosecondsPerSecond / speaker.rate_);
    speaker.Pull(frames);
}

}  // namespace host
