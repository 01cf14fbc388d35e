#include "backend/desktop/sound/SoundDeviceKeeper.h"

#include "backend/LoopDriver.h"

namespace host {

namespace {

constexpr Microseconds kRetryInterval = 2 * kMicrosecondsPerSecond;

}  // namespace

void SoundDeviceKeeper::Start() {
    isWanted_ = true;
    if (Try(Attempt::kFirst)) return;
    user_.OnDeviceLost();
    retryAt_ = clock_.Now() + kRetryInterval;
}

void SoundDeviceKeeper::Stop() noexcept {
    isWanted_ = false;
    device_.Close();
}

Microseconds SoundDeviceKeeper::Tend(Microseconds now) {
    if (!isWanted_) return LoopClient::kNever;
    if (device_.IsLost()) {
        device_.Close();
        user_.OnDeviceLost();
        retryAt_ = now + kRetryInterval;
    }
    if (device_.IsOpen()) return LoopClient::kNever;
    if (now >= retryAt_) {
        if (Try(Attempt::kAgain)) return LoopClient::kNever;
        retryAt_ = now + kRetryInterval;
    }
    return retryAt_;
}

bool SoundDeviceKeeper::Try(Attempt attempt) {
    if (!user_.OpenDevice(device_, attempt)) return false;
    user_.OnDeviceOpened(attempt);
    device_.Run();
    return true;
}

}  // namespace host
