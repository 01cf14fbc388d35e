#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "backend/Storage.h"
#include "runtime/Console.h"
#include "runtime/loop/EventLoop.h"
#include "runtime/sound/OutputTap.h"
#include "runtime/soundfile/SoundWriter.h"

namespace host {

/// Writes what goes through a tap into a sound file, in the format of the path's ending. UI thread only; the tap's
/// other end is the audio thread's.
class Recorder {
public:
    /// The tap must outlive it. `path` also stands in messages.
    Recorder(EventLoop& loop, Console& console, OutputTap& tap, std::unique_ptr<OutputFile> file, std::string path);
    ~Recorder();
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    /// Writes from now on, at the speaker's rate.
    void Start(int rate);
    /// Called once, when the disk takes no more; the recorder may be destroyed in it. The loss is reported by then.
    void SetFailureHandler(std::function<void()> onFailure) { onFailure_ = std::move(onFailure); }
    /// Writes what is left in the tap and closes the file. A loss is reported. False when something is lost.
    bool Finish() noexcept;

private:
    /// False when something is lost.
    bool Drain();
    void DrainOnTimer();

    EventLoop& loop_;
    Console& console_;
    OutputTap& tap_;
    std::unique_ptr<OutputFile> file_;  ///< until the start
    std::string path_;
    std::function<void()> onFailure_;
    std::unique_ptr<SoundWriter> writer_;
    std::vector<float> buffer_;
    TimerQueue::Id timer_ = TimerQueue::kNone;
};

}  // namespace host
