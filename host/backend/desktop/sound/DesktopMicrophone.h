#pragma once

#include "backend/Clock.h"
#include "backend/Microphone.h"
#include "backend/desktop/sound/SdlAudioDevice.h"

namespace host {

/// The desktop's default sound input, converted to the wanted format by SDL or its sound server. Operations are the UI
/// thread's; bytes arrive on the device's thread.
class DesktopMicrophone final : public Microphone {
public:
    explicit DesktopMicrophone(const Clock& clock) : clock_(clock) {}
    ~DesktopMicrophone() override { Stop(); }
    DesktopMicrophone(const DesktopMicrophone&) = delete;
    DesktopMicrophone& operator=(const DesktopMicrophone&) = delete;

    void Start(const MicrophoneFormat& format, MicrophoneClient& client) override;
    void Stop() noexcept override;

    /// Notices a lost device, and looks for one in a lost one's place. Returns when it wants to be called again, or
    /// LoopClient::kNever.
    Microseconds Tend(Microseconds now);
    /// The system has a new device: the next Tend tries it.
    void OnDeviceAdded() noexcept { retryAt_ = 0; }

private:
    static void TakeStream(void* self, Uint8* stream, int bytes) noexcept;
    [[nodiscard]] bool OpenDevice();

    const Clock& clock_;
    SdlAudioDevice device_{SdlAudioDevice::Direction::kCapture};
    MicrophoneFormat format_;
    MicrophoneClient* client_ = nullptr;
    Microseconds retryAt_ = 0;
};

}  // namespace host
