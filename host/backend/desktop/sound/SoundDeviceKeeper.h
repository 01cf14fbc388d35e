#pragma once

#include "backend/Clock.h"
#include "backend/desktop/sound/SdlAudioDevice.h"

namespace host {

/// Keeps one of the desktop's default sound devices open while it is wanted: notices when it is lost, and looks for
/// another one then. UI thread.
class SoundDeviceKeeper {
public:
    enum class Attempt { kFirst, kAgain };

    /// What is done with the device. The keeper calls it on the UI thread, while the device does not run.
    class User {
    public:
        /// Opens the device. False when there is none.
        [[nodiscard]] virtual bool OpenDevice(SdlAudioDevice& device, Attempt attempt) = 0;
        /// The device is open and runs as soon as this returns.
        virtual void OnDeviceOpened(Attempt attempt) = 0;
        /// There is no device, or it is closed since it was lost.
        virtual void OnDeviceLost() = 0;

    protected:
        ~User() = default;
    };

    SoundDeviceKeeper(SdlAudioDevice::Direction direction, const Clock& clock, User& user)
        : device_(direction), clock_(clock), user_(user) {}

    /// The device is wanted from now on. The user is told at once whether there is one.
    void Start();
    /// The device is closed, and the user is not called any more.
    void Stop() noexcept;

    /// Looks after the device. Returns when it wants to be called again, or LoopClient::kNever.
    Microseconds Tend(Microseconds now);
    /// The system has a new device: the next Tend tries it.
    void OnDeviceAdded() noexcept { retryAt_ = 0; }

private:
    [[nodiscard]] bool Try(Attempt attempt);

    SdlAudioDevice device_;
    const Clock& clock_;
    User& user_;
    bool isWanted_ = false;
    Microseconds retryAt_ = 0;
};

}  // namespace host
