#include "backend/desktop/sound/PacingThread.h"

#include <chrono>
#include <cstddef>

#include "backend/Clock.h"

namespace host {

PacingThread::PacingThread(LocalSpeaker& speaker, int rate, int periodFrames)
    : speaker_(speaker), rate_(rate), frames_(static_cast<std::size_t>(periodFrames)) {
    thread_ = std::thread([this] { Run(); });
}

PacingThread::~PacingThread() {
    isEnding_.store(true, std::memory_order_relaxed);
    thread_.join();
}

void PacingThread::Run() noexcept {
    const auto start = std::chrono::steady_clock::now();
    const auto periodFrames = static_cast<std::int64_t>(frames_.size());
    for (std::int64_t framesPulled = 0; !isEnding_.load(std::memory_order_relaxed); framesPulled += periodFrames) {
        speaker_.Pull(frames_);
        const std::int64_t next = (framesPulled + periodFrames) * kMicrosecondsPerSecond / rate_;
        std::this_thread::sleep_until(start + std::chrono::microseconds(next));
    }
}

}  // namespace host
