#pragma once

#include <atomic>
#include <thread>
#include <vector>

#include "backend/mix/LocalSpeaker.h"

namespace host {

/// Pulls in a lost device's place, in time and into nothing, so that the tones go on. It runs from its making to its
/// end.
class PacingThread {
public:
    PacingThread(LocalSpeaker& speaker, int rate, int periodFrames);
    /// The mix runs no more when this returns, which takes a period at most.
    ~PacingThread();
    PacingThread(const PacingThread&) = delete;
    PacingThread& operator=(const PacingThread&) = delete;

private:
    void Run() noexcept;

    LocalSpeaker& speaker_;
    int rate_;
    std::vector<float> frames_;
    std::atomic<bool> isEnding_{false};
    std::thread thread_;
};

}  // namespace host
