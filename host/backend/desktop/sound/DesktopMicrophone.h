#pragma once

#include "backend/Microphone.h"
#include "backend/desktop/sound/SoundDeviceKeeper.h"

namespace host {

/// The desktop's default sound input at its own rate, mixed to mono by SDL. Operations are the UI thread's; frames
/// arrive on the device's thread.
class DesktopMicrophone final : public Microphone, private SoundDeviceKeeper::User {
public:
    explicit DesktopMicrophone(const Clock& clock) : keeper_(SdlAudioDevice::Direction::kCapture, clock, *this) {}
    ~DesktopMicrophone() override { Stop(); }
    DesktopMicrophone(const DesktopMicrophone&) = delete;
    DesktopMicrophone& operator=(const DesktopMicrophone&) = delete;

    void Start(MicrophoneClient& client) override;
    void Stop() noexcept override { keeper_.Stop(); }

    [[nodiscard]] SoundDeviceKeeper& Keeper() noexcept { return keeper_; }

private:
    static void TakeStream(void* self, Uint8* stream, int bytes) noexcept;

    // SoundDeviceKeeper::User
    [[nodiscard]] bool OpenDevice(SdlAudioDevice& device, SoundDeviceKeeper::Attempt attempt) override;
    void OnDeviceOpened(SoundDeviceKeeper::Attempt attempt) override;
    void OnDeviceLost() override;

    SoundDeviceKeeper keeper_;
    MicrophoneClient* client_ = nullptr;
    int rate_ = 0;
};

}  // namespace host
