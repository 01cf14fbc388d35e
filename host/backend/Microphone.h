#pragma once

#include <cstdint>
#include <span>

namespace host {

/// Unsigned 8-bit samples, silence at 128, channels interleaved.
struct MicrophoneFormat {
    int rate = 8000;  ///< frames a second
    int channels = 2;
};

/// Receives a microphone's bytes on the microphone's own thread (in headless on the UI thread).
class MicrophoneClient {
public:
    /// Any number of whole frames. Neither allocates, locks, logs nor touches a file.
    virtual void OnMicrophoneBytes(std::span<const std::uint8_t> bytes) noexcept = 0;
    /// The device is gone or there is none; the microphone looks for one by itself until it is stopped.
    virtual void OnMicrophoneLost() noexcept = 0;
    virtual void OnMicrophoneRestored() noexcept = 0;

protected:
    ~MicrophoneClient() = default;
};

/// The sound input, asked for raw: without noise suppression, echo cancelling or gain control. UI thread.
class Microphone {
public:
    virtual ~Microphone() = default;

    /// Starts capture. Without a device the client is told OnMicrophoneLost at once.
    virtual void Start(const MicrophoneFormat& format, MicrophoneClient& client) = 0;
    /// No client is called any more when this returns. Stopping a stopped microphone does nothing.
    virtual void Stop() noexcept = 0;
};

}  // namespace host
