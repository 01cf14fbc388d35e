#include "backend/desktop/sound/DesktopSpeaker.h"

#include <algorithm>
#include <span>

#include "backend/LoopDriver.h"

namespace host {

namespace {

constexpr Microseconds kRetryInterval = 2 * kMicrosecondsPerSecond;

}  // namespace

void DesktopSpeaker::Open(SpeakerClient& client) {
    Close();
    underrunsAtOpen_ = meter_.Count();
    rate_ = kUsualRate;
    periodFrames_ = kWantedPeriodFrames;
    const bool isOpen = OpenDevice(SDL_AUDIO_ALLOW_FREQUENCY_CHANGE | SDL_AUDIO_ALLOW_SAMPLES_CHANGE);
    StartMix(client, rate_, periodFrames_);
    if (isOpen) {
        device_.Run();
    } else {
        PaceWithoutDevice(clock_.Now());
    }
}

void DesktopSpeaker::Close() noexcept {
    device_.Close();
    pacing_.reset();
    StopMix();
}

void DesktopSpeaker::PaceWithoutDevice(Microseconds now) {
    LoseDevice();
    pacing_.emplace(*this, rate_, periodFrames_);
    retryAt_ = now + kRetryInterval;
}

Microseconds DesktopSpeaker::Tend(Microseconds now) {
    if (!IsMixing()) return LoopClient::kNever;
    if (device_.IsLost()) {
        device_.Close();
        PaceWithoutDevice(now);
    }
    if (device_.IsOpen()) return LoopClient::kNever;
    if (now >= retryAt_) {
        // What was mixed at one rate so far stays at it; SDL converts if the new device has another.
        if (OpenDevice(SDL_AUDIO_ALLOW_SAMPLES_CHANGE)) {
            pacing_.reset();
            RestoreDevice(periodFrames_);
            device_.Run();
            return LoopClient::kNever;
        }
        retryAt_ = now + kRetryInterval;
    }
    return retryAt_;
}

bool DesktopSpeaker::OpenDevice(int changes) {
    SDL_AudioSpec wanted{};
    wanted.freq = rate_;
    wanted.format = AUDIO_F32SYS;
    wanted.channels = 1;
    wanted.samples = kWantedPeriodFrames;
    wanted.callback = FillStream;
    wanted.userdata = this;
    meter_.Restart();
    const auto obtained = device_.Open(wanted, changes);
    if (!obtained) return false;
    // The device does not run yet: nothing is pulled before the mix knows these.
    rate_ = obtained->freq;
    periodFrames_ = std::max<int>(1, obtained->samples);
    return true;
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
