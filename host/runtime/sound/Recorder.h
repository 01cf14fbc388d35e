#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "backend/Storage.h"
#include "runtime/Console.h"
#include "runtime/loop/EventLoop.h"
#include "runtime/sound/OutputTap.h"
#include "runtime/soundfile/WavWriter.h"

namespace host {

/// Writes what the speaker plays into a WAV file, from the speaker's opening to its closing. UI thread only; its tap is
/// the audio thread's.
class Recorder {
public:
    /// `path` is for messages.
    Recorder(EventLoop& loop, Console& console, std::unique_ptr<OutputFile> file, std::string path);
    ~Recorder();
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    [[nodiscard]] OutputTap& GetTap() noexcept { return tap_; }

    /// Writes from now on, at the speaker's rate.
    void Start(int rate);
    /// Once nothing is pushed any more: writes what is left and closes the file. A loss is reported.
    void Finish() noexcept;

private:
    void Drain();
    void DrainOnTimer();

    EventLoop& loop_;
    Console& console_;
    std::unique_ptr<OutputFile> file_;  ///< until the start
    std::string path_;
    OutputTap tap_;
    std::optional<WavWriter> writer_;
    std::vector<float> buffer_;
    TimerQueue::Id timer_ = TimerQueue::kNone;
};

}  // namespace host
