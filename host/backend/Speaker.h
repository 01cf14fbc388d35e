#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "backend/MixMessages.h"

namespace host {

/// Hears from a speaker. What runs on the speaker's own thread neither allocates, locks, logs nor touches a file.
class SpeakerClient {
public:
    /// There is news to take. On the speaker's own thread, in each period until it is taken.
    virtual void OnSpeakerNews() noexcept = 0;
    /// The device is gone. The mix goes on in time, unheard, and the speaker looks for a device by itself. UI thread.
    virtual void OnSpeakerLost() noexcept = 0;
    /// There is a device again, whose PeriodFrames() may be others. UI thread.
    virtual void OnSpeakerRestored() noexcept = 0;
    /// These frames were given to the device (silence while it is lost). On the speaker's own thread; on the UI thread,
    /// and only where somebody asked the back end for it, where that is in another address space.
    virtual void OnFramesPlayed(std::span<const float> /*frames*/) noexcept {}

protected:
    ~SpeakerClient() = default;
};

/// The sound output: one mono stream at the device's own rate, mixed where the device asks for frames. UI thread.
class Speaker {
public:
    virtual ~Speaker() = default;

    /// Starts to play. Without a device the client is told OnSpeakerLost at once, and the mix goes on all the same.
    virtual void Open(SpeakerClient& client) = 0;
    /// Silent, and no client is called any more, when this returns. All clips and voices are forgotten.
    virtual void Close() noexcept = 0;

    /// Hands a clip over, once; commands that name it follow. `frames` has room for the whole clip and stays the
    /// caller's, in place, until the clip is reported as dropped. Which of them are there already, kClipReady tells.
    virtual void HandOver(ClipNumber number, const ClipShape& shape, const float* frames) noexcept = 0;
    /// Commands are obeyed in their order; what one call takes is obeyed before the same frame. Returns how many were
    /// taken: fewer only when the device has stopped asking.
    virtual std::size_t Send(std::span<const MixCommand> commands) noexcept = 0;
    /// Takes as much news as fits. Returns how many.
    virtual std::size_t TakeNews(std::span<MixNews> news) noexcept = 0;

    /// Frames a second; fixed from Open to Close, also across a lost device.
    [[nodiscard]] virtual int Rate() const noexcept = 0;
    /// Frames that the device asks for at once.
    [[nodiscard]] virtual int PeriodFrames() const noexcept = 0;
    /// Periods that the device could not get in time since Open. Any thread.
    [[nodiscard]] virtual std::uint64_t Underruns() const noexcept = 0;
};

}  // namespace host
