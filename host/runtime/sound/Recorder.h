#pragma once

#include <memory>
#include <string>
#include <vector>

#include "runtime/loop/EventLoop.h"
#include "runtime/sound/OutputTap.h"

namespace host {

class WavWriter;

/// Writes what the speaker plays into a WAV file, from the speaker's opening to its closing. UI thread only; its tap is
/// the audio thread's.
class Recorder {
public:
    explicit Recorder(EventLoop& loop);
    ~Recorder();
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    [[nodiscard]] OutputTap& GetTap() noexcept { return tap_; }

    /// Makes the file, so that a path that cannot be written is known before anything starts. False then.
    [[nodiscard]] bool Create(const std::string& path);
    /// Writes from now on, at the speaker's rate.
    void Start(int rate);
    /// Once nothing is pushed any more: writes what is left and completes the file.
    void Finish() noexcept;

private:
    void Drain();
    void DrainOnTimer();

    EventLoop& loop_;
    OutputTap tap_;
    std::string path_;
    std::unique_ptr<WavWriter> writer_;
    std::vector<float> buffer_;
    TimerQueue::Id timer_ = TimerQueue::kNone;
};

}  // namespace host
