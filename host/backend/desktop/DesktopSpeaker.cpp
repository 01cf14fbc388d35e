#include "backend/desktop/DesktopSpeaker.h"

#include <algorithm>
#include <span>

#include "backend/LoopDriver.h"

namespace host {

namespace {

constexpr Microseconds kRetryInterval = 2 * kMicrosecondsPerSecond;

}  // namespace

void DesktopSpeaker::Open(SpeakerClient& client) {
    Close();
    client_ = &client;
    underrunsAtOpen_ = meter_.Count();
    rate_ = kUsualRate;
    periodFrames_ = kWantedPeriodFrames;
    if (OpenDevice(SDL_AUDIO_ALLOW_FREQUENCY_CHANGE | SDL_AUDIO_ALLOW_SAMPLES_CHANGE)) {
        device_.Run();
    } else {
        client_->OnSpeakerLost();
        pacing_.emplace(*client_, rate_, periodFrames_);
        retryAt_ = clock_.Now() + kRetryInterval;
    }
}

void DesktopSpeaker::Close() noexcept {
    device_.Close();
    pacing_.reset();
    client_ = nullptr;
}

Microseconds DesktopSpeaker::Tend(Microseconds now) {
    if (client_ == nullptr) return LoopClient::kNever;
    if (device_.IsLost()) {
        device_.Close();
        client_->OnSpeakerLost();
        pacing_.emplace(*client_, rate_, periodFrames_);
        retryAt_ = now + kRetryInterval;
    }
    if (device_.IsOpen()) return LoopClient::kNever;
    if (now >= retryAt_) {
        // A client that has started at one rate stays at it; SDL converts if the new device has another.
        if (OpenDevice(SDL_AUDIO_ALLOW_SAMPLES_CHANGE)) {
            pacing_.reset();
            device_.Run();
            client_->OnSpeakerRestored();
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
    wanted.samples = static_cast<Uint16>(periodFrames_);
    wanted.callback = FillStream;
    wanted.userdata = this;
    meter_.Restart();
    const auto obtained = device_.Open(wanted, changes);
    if (!obtained) return false;
    if ((changes & SDL_AUDIO_ALLOW_FREQUENCY_CHANGE) != 0) {
        // The device waits: nothing is pulled before the client can know these.
        rate_ = obtained->freq;
        periodFrames_ = std::max<int>(1, obtained->samples);
    }
    return true;
}

void DesktopSpeaker::FillStream(void* self, Uint8* stream, int bytes) noexcept {
    auto& speaker = *static_cast<DesktopSpeaker*>(self);
    // SDL's buffers are aligned for every format that it has.
    std::span<float> rest(static_cast<float*>(static_cast<void*>(stream)),
                          static_cast<std::size_t>(bytes) / sizeof(float));
    speaker.meter_.OnPeriod(speaker.clock_.Now(),
                            static_cast<Microseconds>(rest.size()) * kMicrosecondsPerSecond / speaker.rate_);
    // A device that came later may have another period than the client was told.
    while (!rest.empty()) {
        const std::size_t count = std::min(rest.size(), static_cast<std::size_t>(speaker.periodFrames_));
        speaker.client_->Pull(rest.first(count));
        rest = rest.subspan(count);
    }
}

}  // namespace host
