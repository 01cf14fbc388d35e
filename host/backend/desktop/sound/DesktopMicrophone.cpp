#include "backend/desktop/sound/DesktopMicrophone.h"

#include <span>

#include "backend/LoopDriver.h"

namespace host {

namespace {

constexpr Microseconds kRetryInterval = 2 * kMicrosecondsPerSecond;
// 16 ms at 8000 Hz: less than a block of the client's, so that none waits for the second one after it.
constexpr Uint16 kPeriodFrames = 128;

}  // namespace

void DesktopMicrophone::Start(const MicrophoneFormat& format, MicrophoneClient& client) {
    Stop();
    format_ = format;
    client_ = &client;
    if (OpenDevice()) {
        device_.Run();
    } else {
        client_->OnMicrophoneLost();
        retryAt_ = clock_.Now() + kRetryInterval;
    }
}

void DesktopMicrophone::Stop() noexcept {
    device_.Close();
    client_ = nullptr;
}

Microseconds DesktopMicrophone::Tend(Microseconds now) {
    if (client_ == nullptr) return LoopClient::kNever;
    if (device_.IsLost()) {
        device_.Close();
        client_->OnMicrophoneLost();
        retryAt_ = now + kRetryInterval;
    }
    if (device_.IsOpen()) return LoopClient::kNever;
    if (now >= retryAt_) {
        if (OpenDevice()) {
            client_->OnMicrophoneRestored();
            device_.Run();
            return LoopClient::kNever;
        }
        retryAt_ = now + kRetryInterval;
    }
    return retryAt_;
}

bool DesktopMicrophone::OpenDevice() {
    SDL_AudioSpec wanted{};
    wanted.freq = format_.rate;
    wanted.format = AUDIO_U8;
    wanted.channels = static_cast<Uint8>(format_.channels);
    wanted.samples = kPeriodFrames;
    wanted.callback = TakeStream;
    wanted.userdata = this;
    return device_.Open(wanted, 0).has_value();
}

void DesktopMicrophone::TakeStream(void* self, Uint8* stream, int bytes) noexcept {
    const auto& microphone = *static_cast<DesktopMicrophone*>(self);
    microphone.client_->OnMicrophoneBytes({stream, static_cast<std::size_t>(bytes)});
}

}  // namespace host
