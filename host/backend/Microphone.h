#pragma once

#include <span>

namespace host {

/// What hears through a microphone.
class MicrophoneClient {
public:
    /// There is a device: its frames follow, `rate` of them a second. UI thread, before the first of them.
    virtual void OnMicrophoneOpened(int rate) noexcept = 0;
    /// There is no device, or it is gone; the microphone looks for one by itself until it is stopped. UI thread.
    virtual void OnMicrophoneLost() noexcept = 0;
    /// The next mono frames, -1..1, any number of them. On the microphone's own thread; neither allocates, locks, logs
    /// nor touches a file.
    virtual void OnFramesHeard(std::span<const float> frames) noexcept = 0;

protected:
    ~MicrophoneClient() = default;
};

/// The sound input at the device's own rate, asked for raw: without noise suppression, echo cancelling or gain control.
/// UI thread.
class Microphone {
public:
    virtual ~Microphone() = default;

    /// Starts capture. The client is told at once whether there is a device.
    virtual void Start(MicrophoneClient& client) = 0;
    /// No client is called any more when this returns. Stopping a stopped microphone does nothing.
    virtual void Stop() noexcept = 0;
};

}  // namespace host
