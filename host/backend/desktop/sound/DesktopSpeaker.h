#pragma once

#include <optional>

#include "backend/Clock.h"
#include "backend/desktop/sound/LatenessMeter.h"
#include "backend/desktop/sound/PacingThread.h"
#include "backend/desktop/sound/SoundDeviceKeeper.h"
#include "backend/mix/LocalSpeaker.h"

namespace host {

/// The desktop's default sound output, at its own rate as long as it is the first one since Open. Operations are the UI
/// thread's; the mix runs on the device's thread or, without a device, on one of ours, never on both.
class DesktopSpeaker final : public LocalSpeaker, private SoundDeviceKeeper::User {
public:
    explicit DesktopSpeaker(const Clock& clock)
        : clock_(clock), keeper_(SdlAudioDevice::Direction::kPlayback, clock, *this) {}
    ~DesktopSpeaker() override { Close(); }
    DesktopSpeaker(const DesktopSpeaker&) = delete;
    DesktopSpeaker& operator=(const DesktopSpeaker&) = delete;

    void Open(SpeakerClient& client) override;
    void Close() noexcept override;

    [[nodiscard]] int Rate() const noexcept override { return rate_; }
    [[nodiscard]] int PeriodFrames() const noexcept override { return periodFrames_; }
    [[nodiscard]] std::uint64_t Underruns() const noexcept override { return meter_.Count() - underrunsAtOpen_; }

    [[nodiscard]] SoundDeviceKeeper& Keeper() noexcept { return keeper_; }

private:
    static constexpr int kUsualRate = 48'000;        // frames a second, where no device tells another
    static constexpr int kWantedPeriodFrames = 256;  // 5 ms: a press is heard at once, and every device can do it

    static void FillStream(void* self, Uint8* stream, int bytes) noexcept;

    // SoundDeviceKeeper::User
    [[nodiscard]] bool OpenDevice(SdlAudioDevice& device, SoundDeviceKeeper::Attempt attempt) override;
    void OnDeviceOpened(SoundDeviceKeeper::Attempt attempt) override;
    void OnDeviceLost() override;

    const Clock& clock_;
    SoundDeviceKeeper keeper_;
    std::optional<PacingThread> pacing_;
    LatenessMeter meter_;
    std::uint64_t underrunsAtOpen_ = 0;
    int rate_ = kUsualRate;
    int periodFrames_ = kWantedPeriodFrames;
};

}  // namespace host
