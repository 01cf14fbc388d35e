#pragma once

#include <optional>

#include "backend/desktop/SdlLibrary.h"

namespace host {

/// The default sound device in one direction, while it is open. UI thread only; SDL calls back on a thread of its own.
class SdlAudioDevice {
public:
    enum class Direction { kPlayback, kCapture };

    explicit SdlAudioDevice(Direction direction) : direction_(direction) {}
    ~SdlAudioDevice();
    SdlAudioDevice(const SdlAudioDevice&) = delete;
    SdlAudioDevice& operator=(const SdlAudioDevice&) = delete;

    /// Opens the device, not running yet; `changes` are SDL's flags of what it may choose itself. Returns what it has
    /// chosen, empty when there is no device.
    [[nodiscard]] std::optional<SDL_AudioSpec> Open(const SDL_AudioSpec& wanted, int changes);
    void Run() { SDL_PauseAudioDevice(device_, 0); }
    /// When this returns, the callback runs no more.
    void Close() noexcept;

    [[nodiscard]] bool IsOpen() const { return device_ != 0; }
    /// True when an open device has been unplugged, or its server is gone.
    [[nodiscard]] bool IsLost() const { return IsOpen() && SDL_GetAudioDeviceStatus(device_) == SDL_AUDIO_STOPPED; }

private:
    Direction direction_;
    std::optional<SdlSubsystem> audio_;
    SDL_AudioDeviceID device_ = 0;
};

}  // namespace host
