#pragma once

#include <cstdint>
#include <span>

namespace host {

/// What a speaker plays. Called on the speaker's own thread (in headless on the UI thread).
class SpeakerClient {
public:
    /// Fills `frames` with the next mono frames, -1..1. Neither allocates, locks, logs nor touches a file.
    virtual void Pull(std::span<float> frames) noexcept = 0;
    /// The device is gone. The speaker goes on pulling in time, unheard, and looks for a device by itself.
    virtual void OnSpeakerLost() noexcept = 0;
    virtual void OnSpeakerRestored() noexcept = 0;

protected:
    ~SpeakerClient() = default;
};

/// The sound output: one stream at the device's own rate.
class Speaker {
public:
    virtual ~Speaker() = default;

    /// Starts pulling. Without a device the client is told OnSpeakerLost at once and pulled all the same.
    virtual void Open(SpeakerClient& client) = 0;
    /// Silent, and no client is called any more, when this returns.
    virtual void Close() noexcept = 0;

    /// Frames a second; fixed from Open to Close, also across a lost device.
    [[nodiscard]] virtual int Rate() const noexcept = 0;
    /// Frames that one Pull asks for.
    [[nodiscard]] virtual int PeriodFrames() const noexcept = 0;
    /// Periods that the device could not get in time since Open. Any thread.
    [[nodiscard]] virtual std::uint64_t Underruns() const noexcept = 0;
};

}  // namespace host
